#include "kit/ink_model.h"

#include <cmath>

namespace vrk::kit {

double srgb_to_linear(double level) {
  return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
}

double linear_to_srgb(double light) {
  return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

linear_rgb print_color(std::span<const double> coverage) {
  linear_rgb color{1, 1, 1};
  for (std::size_t ink = 0; ink < coverage.size(); ++ink) {
    for (std::size_t c = 0; c < color.size(); ++c) color[c] *= 1 - coverage[ink] * (1 - ink_colors[ink][c]);
  }
  return color;
}

}  // namespace vrk::kit
