// The tone curve of a curve handle: one table look-up a pixel.
#pragma once

#include "base/carver.h"
#include "base/curve_image.h"

namespace vrk {

// Takes a section and fills it with a sample of output width for every input level. The image holds the whole curve.
u8* build_curve_table(curve_image image, u32 flags, carver& block);

}  // namespace vrk
