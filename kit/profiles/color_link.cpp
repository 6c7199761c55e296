#include "kit/profiles/color_link.h"

#include <algorithm>
#include <utility>

#include "kit/color_table.h"
#include "kit/profiles/lcms_transform.h"

namespace vrk::profiles {
namespace {

constexpr unsigned points_for_total = 33;  // of a cube that the largest total is looked for in

std::shared_ptr<void> transform_between(const profile& from, const profile& to, const link_options& options) {
  if (from.channels() != 3) throw profile_error(from.name() + ": is no RGB profile, which the source has to be");
  const cmsUInt32Number flags = exact | (options.black_point_compensation ? cmsFLAGS_BLACKPOINTCOMPENSATION : 0);
  lcms_transform made(cmsCreateTransform(from.lcms(), device16(3), to.lcms(), device16(to.channels()),
                                         cmsUInt32Number(options.rendering), flags));
  if (made == nullptr) throw profile_error(to.name() + ": has no table from colours to its device");
  return made;
}

}  // namespace

std::optional<ink_order> ink_order_of(std::string_view letters) {
  ink_order order{};
  if (letters.size() != order.size()) return {};
  for (std::size_t plane = 0; plane < order.size(); ++plane) {
    constexpr std::array<std::string_view, 6> names{"K", "C", "M", "Y", "c5", "m6"};
    const std::size_t channel = letters.find_first_of(names[plane]);
    if (channel == std::string_view::npos) return {};
    order[plane] = std::uint8_t(channel);
  }
  return order;
}

color_link::color_link(const profile& from, const profile& to, const link_options& options)
    : transform_(transform_between(from, to, options)),
      channels_(to.channels()),
      intent_served_(cmsIsIntentSupported(to.lcms(), cmsUInt32Number(options.rendering), LCMS_USED_AS_OUTPUT)),
      order_(options.order) {
  if (!options.ink_limit) return;
  if (channels_ == 3) throw profile_error(to.name() + ": has no inks, so no ink limit");
  asked_limit_ = options.ink_limit;
  double largest = 0;
  const kit::axis_positions levels = kit::even_axis(points_for_total);
  for (const std::uint16_t r : levels) {
    const samples inks = convert_unlimited(slice_of(r, levels));
    for (auto at = inks.begin(); at != inks.end(); at += channels_) {
      largest = std::max(largest, total_of({at, channels_}));
    }
  }
  limit_.emplace(*asked_limit_, largest);
}

samples color_link::convert(const samples& rgb) const {
  samples out = convert_unlimited(rgb);
  if (limit_) {
    for (auto at = out.begin(); at != out.end(); at += channels_) limit_->apply({at, channels_});
  }
  return out;
}

samples color_link::convert_unlimited(const samples& rgb) const {
  const std::size_t pixels = rgb.size() / 3;
  samples device(pixels * channels_);
  cmsDoTransform(transform_.get(), rgb.data(), device.data(), cmsUInt32Number(pixels));
  if (channels_ == 3) return device;
  samples planes(device.size());
  for (std::size_t pixel = 0; pixel < device.size(); pixel += channels_) {
    for (std::size_t plane = 0; plane < channels_; ++plane) planes[pixel + plane] = device[pixel + order_[plane]];
  }
  return planes;
}

samples slice_of(std::uint16_t r, const std::vector<std::uint16_t>& levels) {
  samples rgb;
  rgb.reserve(3 * levels.size() * levels.size());
  for (const std::uint16_t g : levels) {
    for (const std::uint16_t b : levels) rgb.insert(rgb.end(), {r, g, b});
  }
  return rgb;
}

}  // namespace vrk::profiles
