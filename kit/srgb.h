// sRGB (IEC 61966-2-1): levels, linear light, bytes.
#pragma once

#include <cstdint>

namespace vrk::kit {

// Between an sRGB level (0 ... 1) and linear light.
double srgb_to_linear(double level);
double linear_to_srgb(double light);

// An sRGB level as a byte; levels outside 0 ... 1 are clipped.
constexpr std::uint8_t srgb_byte(double level) {
  return level <= 0 ? std::uint8_t{0} : level >= 1 ? std::uint8_t{255} : std::uint8_t(level * 255 + 0.5);
}

// Linear light as an sRGB byte; light outside 0 ... 1 is clipped. Fast: by a table of 65536 levels of light.
std::uint8_t srgb_byte_of_light(double light);

}  // namespace vrk::kit
