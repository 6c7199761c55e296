// A printer's profile made in memory from the ink model.
#pragma once

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string_view>

#include "kit/bytes.h"
#include "kit/separation.h"

namespace vrk::test {

struct profile_closer {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using icc_profile = std::unique_ptr<void, profile_closer>;

struct transform_closer {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using icc_transform = std::unique_ptr<void, transform_closer>;

inline kit::bytes saved(const icc_profile& profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile.get(), nullptr, &size);
  kit::bytes icc(size);
  cmsSaveProfileToMem(profile.get(), icc.data(), &size);
  return icc;
}

// The primaries of sRGB, or another green, with a tone curve that is a power of the level.
inline icc_profile rgb_profile(double power, const cmsCIExyY& green = {0.30, 0.60, 1}) {
  const cmsCIExyY white{0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries{{0.64, 0.33, 1}, green, {0.15, 0.06, 1}};
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, power);
  cmsToneCurve* const curves[] = {curve, curve, curve};
  icc_profile profile(cmsCreateRGBProfile(&white, &primaries, curves));
  cmsFreeToneCurve(curve);
  return profile;
}

// channels: the inks in the order of the profile, four or six of CMYKcm. Its tables for perceptual, colorimetric and
// saturated rendering differ: the first prints everything lighter, the last darker. Its paper is yellowish.
// spread: makes dots look larger than they are when above 1, the n of J. A. C. Yule and W. J. Nielsen.
class printer_profile {
 public:
  explicit printer_profile(std::string_view channels, double spread = 1) : channels_(channels), spread_(spread) {
    const icc_profile light = rgb_profile(1), lab(cmsCreateLab4Profile(nullptr));
    from_lab_.reset(cmsCreateTransform(lab.get(), TYPE_Lab_DBL, light.get(), TYPE_RGB_DBL, INTENT_RELATIVE_COLORIMETRIC,
                                       cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
    to_lab_.reset(cmsCreateTransform(light.get(), TYPE_RGB_DBL, lab.get(), TYPE_Lab_DBL, INTENT_RELATIVE_COLORIMETRIC,
                                     cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
  }

  kit::bytes encode() {
    const icc_profile profile(cmsCreateProfilePlaceholder(nullptr));
    cmsSetProfileVersion(profile.get(), 4.3);
    cmsSetDeviceClass(profile.get(), cmsSigOutputClass);
    cmsSetColorSpace(profile.get(), inks() == 4 ? cmsSigCmykData : cmsSig6colorData);
    cmsSetPCS(profile.get(), cmsSigLabData);
    const cmsCIEXYZ paper{0.90, 0.93, 0.70};
    cmsWriteTag(profile.get(), cmsSigMediaWhitePointTag, &paper);
    for (const auto& [tag, power] : {std::pair{cmsSigBToA0Tag, 0.8}, {cmsSigBToA1Tag, 1.0}, {cmsSigBToA2Tag, 1.3}}) {
      power_ = power;
      write(profile, tag, 3, inks(), 17, [](const cmsUInt16Number* in, cmsUInt16Number* out, void* self) {
        return static_cast<printer_profile*>(self)->inks_of(in, out);
      });
    }
    write(profile, cmsSigAToB0Tag, inks(), 3, inks() == 4 ? 9 : 5,
          [](const cmsUInt16Number* in, cmsUInt16Number* out, void* self) {
            return static_cast<printer_profile*>(self)->color_of(in, out);
          });
    return saved(profile);
  }

 private:
  static constexpr std::string_view planes = "KCMYcm";
  static cmsUInt16Number word(double part) { return cmsUInt16Number(std::lround(std::clamp(part, 0.0, 1.0) * 65535)); }

  unsigned inks() const { return unsigned(channels_.size()); }

  int inks_of(const cmsUInt16Number* in, cmsUInt16Number* out) const {
    const double color[3] = {in[0] / 655.35, in[1] / 257.0 - 128, in[2] / 257.0 - 128};
    kit::linear_rgb light;
    cmsDoTransform(from_lab_.get(), color, light.data(), 1);
    for (double& part : light) part = std::pow(std::clamp(part, 0.0, 1.0), power_);
    const kit::ink_coverage coverage = kit::separate(light, inks() == 6);
    for (unsigned i = 0; i < inks(); ++i) out[i] = word(coverage[planes.find(channels_[i])]);
    return 1;
  }

  int color_of(const cmsUInt16Number* in, cmsUInt16Number* out) const {
    kit::ink_coverage coverage{};
    for (unsigned i = 0; i < inks(); ++i) coverage[planes.find(channels_[i])] = in[i] / 65535.0;
    kit::linear_rgb light{1, 1, 1};
    for (unsigned p = 0; p < 6; ++p) {
      for (unsigned c = 0; c < 3; ++c) {
        const double root = std::pow(kit::ink_colors[p][c], 1 / spread_);
        light[c] *= std::pow(1 - coverage[p] * (1 - root), spread_);
      }
    }
    double color[3];
    cmsDoTransform(to_lab_.get(), light.data(), color, 1);
    out[0] = word(color[0] / 100), out[1] = word((color[1] + 128) / 255), out[2] = word((color[2] + 128) / 255);
    return 1;
  }

  void write(const icc_profile& profile, cmsTagSignature tag, unsigned in, unsigned out, unsigned points,
             cmsSAMPLER16 sample) {
    cmsPipeline* const stages = cmsPipelineAlloc(nullptr, in, out);
    cmsStage* const grid = cmsStageAllocCLut16bit(nullptr, points, in, out, nullptr);
    cmsStageSampleCLut16bit(grid, sample, this, 0);
    cmsPipelineInsertStage(stages, cmsAT_END, cmsStageAllocToneCurves(nullptr, in, nullptr));
    cmsPipelineInsertStage(stages, cmsAT_END, grid);
    cmsPipelineInsertStage(stages, cmsAT_END, cmsStageAllocToneCurves(nullptr, out, nullptr));
    cmsWriteTag(profile.get(), tag, stages);
    cmsPipelineFree(stages);
  }

  std::string_view channels_;
  icc_transform from_lab_, to_lab_;
  double spread_, power_ = 1;
};

}  // namespace vrk::test
