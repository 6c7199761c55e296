// The second converter: RGB or gray to four or six inks through a grid, or one-sample pixels through a tone curve.
#pragma once

#include "base/flags.h"
#include "csc/grid.h"
#include "csc/widths.h"

namespace vrk {

struct csc2_handle {
  color_grid grid;   // references nothing in a curve handle
  ref<u8> curve;     // curve handle: 256 or (16-bit input) 65536 samples of output width
  u32 layout;        // pixel layout of RGB input; anything above 3 counts as 0
  u32 flags;         // as adjusted
  u16 white_out[6];  // output for full scale in all three samples, at output width
  u32 kernel;        // row of the table in csc2_kernels.cpp
};

constexpr u32 csc2_record_bytes = 416;  // counted for the record
static_assert(sizeof(csc2_handle) + record_slack <= csc2_record_bytes);

constexpr u64 csc2_grid_bytes(u64 n, u64 inks, bool prec12) {  // n grid points per axis, 2 ... 255
  return csc2_record_bytes + grid_section_bytes(n, inks, prec12);
}
static_assert(csc2_grid_bytes(17, 4, false) == 21389 && csc2_grid_bytes(17, 6, false) == 31215);
static_assert(csc2_grid_bytes(17, 4, true) == 52612 && csc2_grid_bytes(17, 6, true) == 72264);

constexpr u32 curve_levels(u32 flags) { return has(flags, VRK_IN16) ? 65536 : 256; }
constexpr u32 csc2_curve_bytes(u32 flags) {
  return csc2_record_bytes + section_slack + curve_levels(flags) * (has(flags, VRK_OUT16) ? 2 : 1);
}
static_assert(csc2_curve_bytes(0) == 703 && csc2_curve_bytes(VRK_OUT16) == 959);
static_assert(csc2_curve_bytes(VRK_IN16) == 65983 && csc2_curve_bytes(VRK_IN16 | VRK_OUT16) == 131519);

using csc2_kernel = void(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst);

// Rows of grid handles (inks 4 or 6; gray: one input sample a pixel) and of curve handles.
u32 csc2_select_kernel(u32 inks, bool gray, u32 flags, bool bounded);
u32 csc2_select_curve_kernel(u32 flags);
csc2_kernel* csc2_kernel_of(const csc2_handle& h);

}  // namespace vrk
