// What a pre-processor does to a scanline.
#pragma once

#include <span>

#include "preproc/preproc_handle.h"

namespace vrk {

// The chain of stages that the handle holds, for every input level of one channel (0 R, 1 G, 2 B): balance, lift,
// contrast, the channel's curve, the common curve. The values have value_bits.
void preproc_combine(const preproc_handle& handle, u32 channel, std::span<u16, input_levels> values);

// Returns 1, or 0 with nothing written when the layout is above 3.
u32 preproc_transform(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

}  // namespace vrk
