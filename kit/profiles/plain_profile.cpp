#include "kit/profiles/plain_profile.h"

#include <lcms2.h>

#include <memory>

namespace vrk::profiles {
namespace {

using tone_curve = std::unique_ptr<cmsToneCurve, decltype([](cmsToneCurve* curve) { cmsFreeToneCurve(curve); })>;
using icc_profile = std::unique_ptr<void, decltype([](void* profile) { cmsCloseProfile(profile); })>;
using text = std::unique_ptr<cmsMLU, decltype([](cmsMLU* all) { cmsMLUfree(all); })>;

kit::bytes saved(unsigned channels, const std::string& name, const tone_curve& curve, const primaries& colors) {
  const auto xyy = [](const chromaticity& c) { return cmsCIExyY{c.x, c.y, 1}; };
  const cmsCIExyY white = xyy(colors.white);
  const cmsCIExyYTRIPLE rgb{xyy(colors.red), xyy(colors.green), xyy(colors.blue)};
  cmsToneCurve* const curves[] = {curve.get(), curve.get(), curve.get()};
  const icc_profile made(channels == 1 ? cmsCreateGrayProfile(&white, curve.get())
                                       : cmsCreateRGBProfile(&white, &rgb, curves));
  if (made == nullptr) return {};
  const text description(cmsMLUalloc(nullptr, 1));
  cmsMLUsetASCII(description.get(), "en", "US", name.c_str());
  cmsWriteTag(made.get(), cmsSigProfileDescriptionTag, description.get());
  cmsUInt32Number size = 0;
  if (!cmsSaveProfileToMem(made.get(), nullptr, &size)) return {};
  kit::bytes icc(size);
  return cmsSaveProfileToMem(made.get(), icc.data(), &size) ? icc : kit::bytes{};
}

}  // namespace

kit::bytes plain_profile(unsigned channels, const std::string& name, double gamma, const primaries& colors) {
  return saved(channels, name, tone_curve(cmsBuildGamma(nullptr, gamma)), colors);
}

kit::bytes srgb_profile(unsigned channels) {
  const double curve[]{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  return saved(channels, "sRGB", tone_curve(cmsBuildParametricToneCurve(nullptr, 4, curve)), srgb_primaries);
}

kit::bytes adobe_rgb_profile() {
  constexpr primaries colors{{0.3127, 0.3290}, {0.64, 0.33}, {0.21, 0.71}, {0.15, 0.06}};
  return plain_profile(3, "Adobe RGB (1998)", 563.0 / 256, colors);
}

}  // namespace vrk::profiles
