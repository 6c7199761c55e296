#include "kit/profiles/srgb_conversion.h"

#include <cstdlib>

#include "kit/color_table.h"
#include "kit/profiles/color_link.h"
#include "kit/profiles/lcms_transform.h"
#include "kit/profiles/plain_profile.h"

namespace vrk::profiles {
namespace {

std::shared_ptr<void> transform_to_srgb(const profile& from, unsigned bytes, cmsUInt32Number flags) {
  const unsigned channels = from.channels() == 1 ? 1 : 3;
  const profile to("sRGB", srgb_profile(channels));
  lcms_transform made(cmsCreateTransform(from.lcms(), device(from.channels(), bytes), to.lcms(),
                                         device(channels, bytes), INTENT_RELATIVE_COLORIMETRIC,
                                         flags | cmsFLAGS_BLACKPOINTCOMPENSATION));
  if (made == nullptr) throw profile_error(from.name() + ": has no table from its device to colours");
  return made;
}

}  // namespace

// Samples of 8 bits may go through tables that Little CMS makes of the profiles: that is many times as fast.
srgb_conversion::srgb_conversion(const profile& from, unsigned bits)
    : transform_(transform_to_srgb(from, bits / 8, bits == 8 ? page_by_page : exact)) {}

void srgb_conversion::convert(const void* pixels, unsigned count, void* srgb) const {
  cmsDoTransform(transform_.get(), pixels, srgb, count);
}

bool is_srgb(const profile& picture) {
  constexpr unsigned points = 17, step = 257;  // of 8 bits
  if (picture.channels() != 1 && picture.channels() != 3) return false;
  const std::shared_ptr<void> transform = transform_to_srgb(picture, 2, exact);
  const auto stays = [&](const samples& before) {
    samples after(before.size());
    cmsDoTransform(transform.get(), before.data(), after.data(), cmsUInt32Number(before.size() / picture.channels()));
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (std::abs(int(before[i]) - int(after[i])) > int{step}) return false;
    }
    return true;
  };
  if (picture.channels() == 1) return stays(kit::even_axis(255));
  const kit::axis_positions levels = kit::even_axis(points);
  for (const std::uint16_t r : levels) {
    if (!stays(slice_of(r, levels))) return false;
  }
  return true;
}

}  // namespace vrk::profiles
