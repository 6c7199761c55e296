// What a step chart has where on its page.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "pictures/stroke_font.h"
#include "tools/page/paper.h"

namespace vrk::tool {

inline constexpr double smallest_patch = 6, largest_patch = 12;  // mm a side; instruments need the former

struct chart_options {
  unsigned inks = 4;    // 1: K, 4: K C M Y, 6: with light cyan and light magenta
  unsigned steps = 21;  // of each ramp, paper and full tone included
  paper_size paper{210, 297};
};

// Lengths are in millimetres, from the top left corner of the page.
struct chart_patch {
  std::string place;                  // "B7": the row's letter, and the number in it
  std::array<std::uint8_t, 6> tones;  // in plane order, 255 for full ink
  double left, top;
};

struct step_chart {
  unsigned inks, steps, ramps;
  unsigned columns, rows;                      // patches of the longest row, and rows
  double side;                                 // of a patch
  std::vector<chart_patch> patches;            // row by row
  std::vector<pictures::segment> marks, text;  // lines of all inks, of K
};

// Ramps of each ink, of red, green and blue (two inks each) and of gray (C, M and Y), as large as the page allows.
// Throws usage_error when patches of the smallest size do not fit.
step_chart lay_out_chart(const chart_options& options);

}  // namespace vrk::tool
