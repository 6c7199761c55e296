// Tone curves on the command line.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "kit/curve_image.h"
#include "tools/pipeline/table.h"

namespace vrk::tool {

// What a CURVE may be, for --help.
inline constexpr const char* curve_help =
    "CURVE is the file of a curve image (\"1dlt\"), or one of these: gamma:G (0.1 ... 10; above 1 raises the middle), "
    "s:N (-1 ... 1; above 0 raises contrast in the middle), dot-gain:G (0 ... 0.25; compensates a gain of G at half "
    "tone), ink-limit:L (0 ... 1; full tone becomes L), points:IN/OUT,IN/OUT,... (a smooth curve through these points, "
    "in percent).";

// argument: CURVE, or NAME=CURVE with one of `names`. A curve that the kit makes becomes an image of one curve.
struct named_curve {
  std::optional<std::size_t> of;  // index of the name; none: the curve is for all
  table image;
};
named_curve read_curve(const std::string& argument, std::span<const std::string_view> names);

// The curve of an image that has one. Throws user_error for any other image.
kit::curve only_curve(const table& image);

}  // namespace vrk::tool
