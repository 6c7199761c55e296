#include "tools/print/dot_colors.h"

#include "kit/ink_model.h"
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

std::vector<std::uint8_t> dot_colors::srgb_of(std::span<const light> row) const {
  std::vector<std::uint8_t> srgb(3 * row.size());
  auto to = srgb.begin();
  for (const light& color : row) {
    const light rgb = profile_ ? profile_->light_of(color) : color;
    for (const float part : rgb) *to++ = kit::srgb_byte_of_light(part);
  }
  return srgb;
}

}  // namespace vrk::tool
