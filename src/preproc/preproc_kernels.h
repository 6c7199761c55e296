// What a pre-processor does to a scanline: a row for each output width and pixel layout.
#pragma once

#include <span>

#include "preproc/preproc_handle.h"

namespace vrk {

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
