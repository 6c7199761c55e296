#include "kit/srgb.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vrk::kit {

double srgb_to_linear(double level) {
  return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
}

double linear_to_srgb(double light) {
  return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

std::uint8_t srgb_byte_of_light(double light) {
  static const std::vector<std::uint8_t> bytes = [] {
    std::vector<std::uint8_t> table(65536);
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = srgb_byte(linear_to_srgb(double(i) / 65535));
    return table;
  }();
  return bytes[std::size_t(std::clamp(light, 0.0, 1.0) * 65535 + 0.5)];
}

}  // namespace vrk::kit
