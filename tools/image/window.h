// Windows: parts of a picture that are shown on their own.
#pragma once

#include <algorithm>
#include <string>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

// A place in a picture, in pixels from its top left corner.
struct pixel_place {
  unsigned x, y;
};

// Where a window of `size` pixels begins along one side of a picture that is `whole` pixels long: centred on `centre`,
// but moved to lie inside.
inline unsigned window_start(unsigned centre, unsigned size, unsigned whole) {
  return std::min(centre > size / 2 ? centre - size / 2 : 0, whole - size);
}

// Refuses a place outside a picture. option: that gave it.
inline void require_inside(const std::string& option, pixel_place place, unsigned width, unsigned height) {
  if (place.x < width && place.y < height) return;
  throw usage_error(option + " " + std::to_string(place.x) + " " + std::to_string(place.y) +
                    ": lies outside the picture, expected 0 to " + std::to_string(width - 1) + " and 0 to " +
                    std::to_string(height - 1));
}

}  // namespace vrk::tool
