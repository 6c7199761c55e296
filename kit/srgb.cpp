#include "kit/srgb.h"

#include <cmath>

namespace vrk::kit {

double srgb_to_linear(double level) {
  return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
}

double linear_to_srgb(double light) {
  return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

const srgb_bytes& srgb_bytes::of_levels() {
  static const srgb_bytes made;
  return made;
}

// The bytes ascend: where each one ends is found by halving.
srgb_bytes::srgb_bytes() {
  const auto byte_of = [](std::size_t level) { return srgb_byte(linear_to_srgb(double(level) / double(levels - 1))); };
  while (bytes_.size() < levels) {
    const std::uint8_t byte = byte_of(bytes_.size());
    std::size_t last = bytes_.size(), end = levels;
    while (end - last > 1) (byte_of((last + end) / 2) == byte ? last : end) = (last + end) / 2;
    bytes_.resize(end, byte);
  }
}

}  // namespace vrk::kit
