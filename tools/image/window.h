// Windows: parts of a picture that are shown on their own.
#pragma once

#include <algorithm>

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

}  // namespace vrk::tool
