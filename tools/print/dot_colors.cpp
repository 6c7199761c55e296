#include "tools/print/dot_colors.h"

#include "kit/ink_model.h"
#include "kit/srgb.h"

namespace vrk::tool {
namespace {

light of_parts(const profiles::printed_dots::roots& parts) { return {parts[0], parts[1], parts[2]}; }

}  // namespace

light dot_colors::of(std::span<const double> shares, std::size_t first) const {
  if (profile_) return of_parts(profile_->of(shares));
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
  const kit::srgb_bytes& bytes = kit::srgb_bytes::of_levels();
  auto to = srgb.begin();
  for (const light& color : row) {
    const light rgb = profile_ ? of_parts(profile_->light_of({color[0], color[1], color[2]})) : color;
    for (std::size_t c = 0; c < 3; ++c) *to++ = bytes.of_light(rgb[c]);
  }
  return srgb;
}

}  // namespace vrk::tool
