// How many pixels lie on an inch.
#pragma once

#include <string>

namespace vrk::tool {

inline constexpr double mm_per_inch = 25.4;

// Pixels per inch, across and down.
struct resolution {
  double x, y;

  bool operator==(const resolution&) const = default;
};

// "600" or "600 x 300".
std::string text_of(resolution dpi);

}  // namespace vrk::tool
