// The family of line kernels.
#pragma once

#include <span>

#include "halftone/ed/ed_handle.h"

namespace vrk {

// Diffuses one line of the block: samples in, levels into the handle's level lines, errors into its error lines.
using ed_kernel = void(ed_handle& h, const u8* src);

struct ed_row {
  u32 flags;        // VRK_IN16 and VRK_PREC10 as the handle keeps them
  u32 planes;       // that the handle produces
  bool two_levels;  // for tables that check_two_levels found to qualify
  ed_kernel* even;  // lines of even numbers run left to right,
  ed_kernel* odd;   // those of odd numbers right to left
};

std::span<const ed_row> ed_rows();

// The row for a handle's flags, planes and tables.
u32 ed_select_row(u32 flags, u32 planes, bool two_levels);

}  // namespace vrk
