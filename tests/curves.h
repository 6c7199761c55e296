// Tone curves without a pattern that a wrong index or shift could hit by luck.
#pragma once

#include <random>

#include "kit/curve_image.h"

namespace vrk::test {

inline kit::curve_image random_curves(unsigned count, unsigned seed = 1) {
  std::mt19937 random(seed);
  kit::curve_image image;
  image.curves.resize(count);
  for (kit::curve& c : image.curves) {
    for (std::uint16_t& level : c) level = std::uint16_t(random());
  }
  return image;
}

}  // namespace vrk::test
