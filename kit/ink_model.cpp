#include "kit/ink_model.h"

namespace vrk::kit {

linear_rgb print_color(std::span<const double> coverage) {
  linear_rgb color{1, 1, 1};
  for (std::size_t ink = 0; ink < coverage.size(); ++ink) {
    for (std::size_t c = 0; c < color.size(); ++c) color[c] *= 1 - coverage[ink] * (1 - ink_colors[ink][c]);
  }
  return color;
}

}  // namespace vrk::kit
