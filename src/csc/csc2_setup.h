// Set-up of the second converter: which tables are taken, how large the handle is, and what stands in it.
#pragma once

#include "csc/csc2_handle.h"

namespace vrk {

struct csc2_plan {
  bool curve;      // a tone curve instead of a grid
  bool gray;       // one sample an input pixel instead of three
  grid_plan grid;  // of a grid
  u32 flags;       // as adjusted
  u32 size;        // of the handle in bytes
};

bool csc2_check(byte_view& image, u8 input_samples, u32 flags, csc2_plan& plan);
bool csc2_build(const csc2_plan& plan, byte_view& image, carver& block);

}  // namespace vrk
