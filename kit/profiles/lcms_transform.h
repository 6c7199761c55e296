// A transform of Little CMS with its owner, and the pixel formats that the transforms here use.
#pragma once

#include <lcms2.h>

#include <memory>

namespace vrk::profiles {

struct transform_closer {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using lcms_transform = std::unique_ptr<void, transform_closer>;

// Samples of 16 bits, as many as the device has channels. Inks: 0 is none.
constexpr cmsUInt32Number device16(unsigned channels) {
  const cmsUInt32Number space = channels == 3 ? PT_RGB : channels == 4 ? PT_CMYK : PT_MCH6;
  return COLORSPACE_SH(space) | CHANNELS_SH(channels) | BYTES_SH(2);
}

// Every colour goes through the profiles' own tables, in 16 bits, not through one that is made of them.
constexpr cmsUInt32Number exact = cmsFLAGS_NOOPTIMIZE | cmsFLAGS_HIGHRESPRECALC | cmsFLAGS_NOCACHE;

}  // namespace vrk::profiles
