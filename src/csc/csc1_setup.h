// Set-up of the first converter: which tables are taken, how large the handle is, and what stands in it.
#pragma once

#include "csc/csc1_handle.h"

namespace vrk {

struct csc1_plan {
  csc1_rule rule;
  grid_plan grid;  // under rule `grid`
  u32 flags;       // as adjusted
  u32 size;        // of the handle in bytes
};

bool csc1_check(byte_view& image, u32 flags, csc1_plan& plan);
bool csc1_build(const csc1_plan& plan, byte_view& image, carver& block);

}  // namespace vrk
