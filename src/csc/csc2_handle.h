// The second converter: RGB or gray to four or six inks through a grid, or one-sample pixels through a tone curve.
#pragma once

#include "base/cpu_level.h"
#include "csc/grid.h"

namespace vrk {

struct csc2_handle {
  color_grid grid;    // references nothing in a curve handle
  ref<u8> curve;      // curve handle: 256 or (16-bit input) 65536 samples of output width
  u32 layout;         // pixel layout of RGB input; anything above 3 counts as 0
  u32 flags;          // as adjusted
  u32 row;            // of the family's table (csc2_kernels.h)
  u32 short_run_row;  // for runs that are too short for that one
  cpu_level level;    // of the processor
};

constexpr u32 csc2_record_bytes = 416;  // what the size rule counts for the record
static_assert(sizeof(csc2_handle) + record_slack <= csc2_record_bytes);

}  // namespace vrk
