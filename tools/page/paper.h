// Lengths and resolutions as people write them.
#pragma once

#include <optional>
#include <string>

#include "tools/image/resolution.h"

namespace vrk::tool {

// In millimetres.
struct paper_size {
  double width, height;
};

inline constexpr double shortest_paper = 1, longest_paper = 10000;  // mm
inline constexpr unsigned lowest_dpi = 20, highest_dpi = 2400;

// "10x15cm", "4x6in", "100x150mm", or a name: A3 to A6, B4, B5, letter, legal, tabloid. None for anything else, and
// for lengths out of range.
std::optional<paper_size> parse_paper(std::string text);

// "600" or "600x300", in whole pixels per inch across and down. None for anything else, and out of range.
std::optional<resolution> parse_dpi(const std::string& text);

}  // namespace vrk::tool
