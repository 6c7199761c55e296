// sRGB (IEC 61966-2-1): levels, linear light, bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vrk::kit {

// Between an sRGB level (0 ... 1) and linear light.
double srgb_to_linear(double level);
double linear_to_srgb(double light);

// An sRGB level as a byte; levels outside 0 ... 1 are clipped.
constexpr std::uint8_t srgb_byte(double level) {
  return level <= 0 ? std::uint8_t{0} : level >= 1 ? std::uint8_t{255} : std::uint8_t(level * 255 + 0.5);
}

// Linear light as sRGB bytes; light outside 0 ... 1 is clipped. Fast: by a table of 65536 levels of light.
class srgb_bytes {
 public:
  static const srgb_bytes& of_levels();

  std::uint8_t of_light(double light) const {
    return bytes_[std::size_t(std::clamp(light, 0.0, 1.0) * double(levels - 1) + 0.5)];
  }

 private:
  static constexpr std::size_t levels = 65536;

  srgb_bytes();
  std::vector<std::uint8_t> bytes_;
};

}  // namespace vrk::kit
