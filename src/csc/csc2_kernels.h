// The second converter's kernels: one row for each kind of pixel and widths, and faster ones for some grids and runs.
#pragma once

#include <span>

#include "csc/csc2_handle.h"

namespace vrk {

using csc2_kernel = void(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst);

struct csc2_row {
  u32 inks;   // samples an output pixel: 4 or 6, 1 for a curve
  bool gray;  // one sample an input pixel instead of three
  csc_widths widths;
  bool bounded;      // serves bounded grids only (see tetra_sse2.h)
  u32 shortest_run;  // worth its preparations from so many pixels on; right for all
  by_level<csc2_kernel*> kernel;
};
std::span<const csc2_row> csc2_rows();

// Finds the rows of a handle whose flags and grid are built.
void csc2_select_rows(u32 inks, bool gray, csc2_handle& h);

void csc2_convert(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst);

}  // namespace vrk
