#include "kit/profiles/color_link.h"

#include <algorithm>
#include <utility>

#include "kit/color_table.h"
#include "kit/profiles/lcms_transform.h"

namespace vrk::profiles {
namespace {

std::shared_ptr<void> transform_between(const profile& from, const profile& to, const link_options& options) {
  if (from.channels() != 3 && from.channels() != 4) {
    throw profile_error(from.name() + ": is no profile of RGB or CMYK, which the source has to be");
  }
  if (to.channels() == 1) throw profile_error(to.name() + ": is a profile of gray, expected RGB, CMYK or six inks");
  const cmsUInt32Number flags = (from.channels() == 3 ? exact : page_by_page) |
                                (options.black_point_compensation ? cmsFLAGS_BLACKPOINTCOMPENSATION : 0);
  lcms_transform made(cmsCreateTransform(from.lcms(), device16(from.channels()), to.lcms(), device16(to.channels()),
                                         cmsUInt32Number(options.rendering), flags));
  if (made == nullptr) throw profile_error(to.name() + ": has no table from colours to its device");
  return made;
}

// Every pixel of three samples with each of the levels behind it.
samples with_fourth(const samples& pixels, const std::vector<std::uint16_t>& levels) {
  samples all;
  all.reserve(pixels.size() / 3 * 4 * levels.size());
  for (auto at = pixels.begin(); at != pixels.end(); at += 3) {
    for (const std::uint16_t level : levels) all.insert(all.end(), {at[0], at[1], at[2], level});
  }
  return all;
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
      source_channels_(from.channels()),
      channels_(to.channels()),
      intent_served_(cmsIsIntentSupported(to.lcms(), cmsUInt32Number(options.rendering), LCMS_USED_AS_OUTPUT)),
      order_(options.order) {
  if (!options.ink_limit) return;
  if (channels_ == 3) throw profile_error(to.name() + ": has no inks, so no ink limit");
  asked_limit_ = options.ink_limit;
  limit_.emplace(*asked_limit_, largest_total());
}

// Of a grid of colours.
double color_link::largest_total() const {
  const kit::axis_positions levels = kit::even_axis(source_channels_ == 3 ? 33 : 17);
  double largest = 0;
  for (const std::uint16_t first : levels) {
    samples colors = slice_of(first, levels);
    if (source_channels_ == 4) colors = with_fourth(colors, levels);
    const samples inks = convert_unlimited(colors);
    for (auto at = inks.begin(); at != inks.end(); at += channels_) {
      largest = std::max(largest, total_of({at, channels_}));
    }
  }
  return largest;
}

samples color_link::convert(const samples& colors) const {
  samples out = convert_unlimited(colors);
  if (limit_) {
    for (auto at = out.begin(); at != out.end(); at += channels_) limit_->apply({at, channels_});
  }
  return out;
}

samples color_link::convert_unlimited(const samples& colors) const {
  const std::size_t pixels = colors.size() / source_channels_;
  samples device(pixels * channels_);
  cmsDoTransform(transform_.get(), colors.data(), device.data(), cmsUInt32Number(pixels));
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
