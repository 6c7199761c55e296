#include "kit/profiles/printed_color.h"

#include "kit/profiles/lcms_transform.h"

namespace vrk::profiles {
namespace {

lcms_transform forward_of(const profile& device) {
  const std::unique_ptr<void, decltype([](void* p) { cmsCloseProfile(p); })> colors(cmsCreateLab4Profile(nullptr));
  lcms_transform made(cmsCreateTransform(device.lcms(), device16(device.channels()), colors.get(), TYPE_Lab_DBL,
                                         INTENT_RELATIVE_COLORIMETRIC, exact));
  if (made == nullptr) throw profile_error(device.name() + ": has no table from its device to colours");
  return made;
}

}  // namespace

printed_color::printed_color(const profile& device, const ink_order& order)
    : transform_(forward_of(device)), channels_(device.channels()), order_(order) {}

std::vector<lab> printed_color::of(const samples& pixels) const {
  samples device = pixels;
  if (channels_ != 3) {
    for (std::size_t pixel = 0; pixel < device.size(); pixel += channels_) {
      for (std::size_t plane = 0; plane < channels_; ++plane) device[pixel + order_[plane]] = pixels[pixel + plane];
    }
  }
  // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): no profile is without channels
  std::vector<lab> colors(pixels.size() / channels_);
  cmsDoTransform(transform_.get(), device.data(), colors.data(), cmsUInt32Number(colors.size()));
  return colors;
}

double delta_e2000(const lab& a, const lab& b) {
  const cmsCIELab from{a[0], a[1], a[2]}, to{b[0], b[1], b[2]};
  return cmsCIE2000DeltaE(&from, &to, 1, 1, 1);
}

}  // namespace vrk::profiles
