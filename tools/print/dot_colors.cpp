#include "tools/print/dot_colors.h"

#include "kit/srgb.h"

namespace vrk::tool {

light dot_colors::of(std::span<const double> shares, std::size_t first) const {
  if (profile_) return profile_->of(shares);
  light product{1, 1, 1};
  for (std::size_t p = 0; p < shares.size(); ++p) {
    std::array<double, 6> inks{};
    inks[first + p] = shares[p];
    const kit::linear_rgb color = kit::print_color(inks);
    product = product * light{float(color[0]), float(color[1]), float(color[2])};
  }
  return product;
}

std::array<std::uint8_t, 3> dot_colors::srgb_of(const light& mean) const {
  const kit::linear_rgb rgb = profile_ ? profile_->light_of(mean) : kit::linear_rgb{mean[0], mean[1], mean[2]};
  return {kit::srgb_byte_of_light(rgb[0]), kit::srgb_byte_of_light(rgb[1]), kit::srgb_byte_of_light(rgb[2])};
}

}  // namespace vrk::tool
