// Tone curves on the command line.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/pipeline/table.h"

namespace vrk::tool {

// What a CURVE may be, for --help.
inline constexpr const char* curve_help =
    "CURVE is the file of a curve image (\"1dlt\"), or gamma:G (above 1 raises the middle), s:N (-1 ... 1, more "
    "contrast "
    "in the middle), dot-gain:G (compensates a gain of G at half tone, 0 ... 0.25), ink-limit:L (full tone becomes L, "
    "0 ... 1), or points:IN/OUT,IN/OUT,... (a smooth curve through them, in percent).";

// argument: CURVE, or NAME=CURVE for one of `names`. Curves that the kit makes come as images of one curve.
struct named_curve {
  std::optional<std::size_t> of;  // place of the name; none: of all
  table image;
};
named_curve read_curve(const std::string& argument, std::span<const std::string_view> names);

}  // namespace vrk::tool
