// The family of line kernels.
#pragma once

#include "halftone/ed/ed_handle.h"

namespace vrk {

// Diffuses one line of the block: samples in, levels into the handle's level lines, errors into its error lines.
using ed_kernel = void (*)(ed_handle& h, const u8* src);

// Row of the family for a handle's flags and plane count.
u32 ed_kernel_row(u32 flags, u32 planes);

// The row's form for a line: even lines run left to right, odd ones right to left.
ed_kernel ed_kernel_of(u32 row, u32 line);

}  // namespace vrk
