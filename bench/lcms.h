// Little CMS as the peer of the converters: a device link of the same grid.
#pragma once

#ifdef VRK_BENCH_LCMS2
#include <lcms2.h>

#include <stdexcept>

#include "kit/color_table.h"

namespace vrk::bench {

// A device link from RGB to the channels of `grid`. version: of its format; below 4 other programs read it, too. To be
// closed by the caller.
inline cmsHPROFILE link_profile(const kit::color_grid& grid, double version) {
  const cmsHPROFILE link = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(link, version);
  cmsSetDeviceClass(link, cmsSigLinkClass);
  cmsSetColorSpace(link, cmsSigRgbData);
  cmsSetPCS(link, grid.channels == 3 ? cmsSigRgbData : grid.channels == 6 ? cmsSig6colorData : cmsSigCmykData);
  cmsPipeline* const stages = cmsPipelineAlloc(nullptr, 3, grid.channels);
  cmsPipelineInsertStage(stages, cmsAT_END,
                         cmsStageAllocCLut16bit(nullptr, grid.points, 3, grid.channels, grid.samples.data()));
  cmsWriteTag(link, cmsSigAToB0Tag, stages);
  cmsPipelineFree(stages);
  return link;
}

// RGB to the channels of `grid` by its tetrahedral interpolation, without the cache of the last pixel. `bits`: 8 or 16,
// of input and output samples.
class lcms_link {
 public:
  lcms_link(const kit::color_grid& grid, unsigned bits) {
    const bool rgb = grid.channels == 3, six = grid.channels == 6;
    const cmsHPROFILE link = link_profile(grid, 4.3);
    const cmsUInt32Number in = COLORSPACE_SH(PT_RGB) | CHANNELS_SH(3) | BYTES_SH(bits / 8);
    const cmsUInt32Number space = rgb ? PT_RGB : six ? PT_MCH6 : PT_CMYK;
    const cmsUInt32Number out = COLORSPACE_SH(space) | CHANNELS_SH(grid.channels) | BYTES_SH(bits / 8);
    transform_ = cmsCreateTransform(link, in, nullptr, out, INTENT_PERCEPTUAL,
                                    cmsFLAGS_NOCACHE | cmsFLAGS_GRIDPOINTS(grid.points));
    cmsCloseProfile(link);
    if (transform_ == nullptr) throw std::runtime_error("Little CMS refused the grid");
  }
  ~lcms_link() { cmsDeleteTransform(transform_); }
  lcms_link(const lcms_link&) = delete;
  lcms_link& operator=(const lcms_link&) = delete;

  void run(const void* src, unsigned pixel_count, void* dst) const {
    cmsDoTransform(transform_, src, dst, pixel_count);
  }

 private:
  cmsHTRANSFORM transform_;
};

}  // namespace vrk::bench

#endif
