// A transform of Little CMS with its owner, and the pixel formats that the transforms here use.
#pragma once

#include <lcms2.h>

#include <memory>

namespace vrk::profiles {

struct transform_closer {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using lcms_transform = std::unique_ptr<void, transform_closer>;

// Samples of 1 or 2 bytes, as many as the device has channels. Inks: 0 is none.
constexpr cmsUInt32Number device(unsigned channels, unsigned bytes) {
  const cmsUInt32Number space = channels == 1 ? PT_GRAY : channels == 3 ? PT_RGB : channels == 4 ? PT_CMYK : PT_MCH6;
  return COLORSPACE_SH(space) | CHANNELS_SH(channels) | BYTES_SH(bytes);
}
constexpr cmsUInt32Number device16(unsigned channels) { return device(channels, 2); }

// Every colour goes through the profiles' own tables, in 16 bits, not through one that is made of them.
constexpr cmsUInt32Number exact = cmsFLAGS_NOOPTIMIZE | cmsFLAGS_HIGHRESPRECALC | cmsFLAGS_NOCACHE;

// For pages pixel by pixel: by such a table where that is faster.
constexpr cmsUInt32Number page_by_page = cmsFLAGS_HIGHRESPRECALC | cmsFLAGS_NOCACHE;

}  // namespace vrk::profiles
