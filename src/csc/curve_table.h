// The table of a curve handle, which turns one-sample pixels into one-sample pixels: an output sample for every input
// level.
#pragma once

#include "base/carver.h"
#include "base/curve_image.h"
#include "base/flags.h"

namespace vrk {

constexpr u32 curve_table_levels(u32 flags) { return has(flags, VRK_IN16) ? 65536 : 256; }
constexpr u32 curve_table_bytes(u32 flags) { return curve_table_levels(flags) * (has(flags, VRK_OUT16) ? 2 : 1); }

// Takes a section and fills it with samples of output width. The image holds the whole curve. Null when the block has
// no room left.
u8* build_curve_table(curve_image image, u32 flags, carver& block);

}  // namespace vrk
