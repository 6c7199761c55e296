// What a pre-processor does to a scanline: a row for each output width and pixel layout.
#pragma once

#include <span>

#include "preproc/preproc_handle.h"

namespace vrk {

// Sends values of one channel (0 R, 1 G, 2 B), which come in as input levels, through the stages that the handle holds:
// balance, lift, contrast, the channel's curve, the common curve. They come out with value_bits.
void preproc_walk(const preproc_handle& handle, u32 channel, std::span<u16> values);

using preproc_kernel = void(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

struct preproc_row {
  int out;     // bits per output sample
  u32 layout;  // of input and output pixels
  preproc_kernel* kernel;
};
std::span<const preproc_row> preproc_rows();

// Returns 1, or 0 with nothing written when the layout is above 3.
u32 preproc_transform(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

}  // namespace vrk
