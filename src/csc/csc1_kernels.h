// The first converter's kernels: one row for each rule and widths, and faster ones for some grids and runs.
#pragma once

#include <span>

#include "csc/csc1_handle.h"

namespace vrk {

using csc1_kernel = void(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

struct csc1_row {
  csc1_rule rule;
  csc_widths widths;
  bool bounded;      // serves bounded grids only (see tetra_sse2.h)
  u32 shortest_run;  // worth its preparations from so many pixels on; right for all
  by_level<csc1_kernel*> kernel;
};
std::span<const csc1_row> csc1_rows();

// Finds the rows of a handle whose flags and grid are built.
void csc1_select_rows(csc1_rule rule, csc1_handle& h);

void csc1_convert(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

}  // namespace vrk
