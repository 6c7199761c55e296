// The first converter: RGB to three samples through a grid, or by a fixed rule to gray, black or posterised colour.
#pragma once

#include "csc/grid.h"
#include "csc/widths.h"

namespace vrk {

// How a table converts; the fixed rules need no grid.
enum class csc1_rule : u8 { grid, through, gray, black, solid };

struct csc1_handle {
  color_grid grid;   // references nothing under a fixed rule
  u32 layout;        // pixel layout of input and output; anything above 3 counts as 0
  u32 flags;         // as adjusted
  u16 white_out[4];  // output for full scale in all three samples, at output width; the fourth is 0
  u32 kernel;        // row of the table in csc1_kernels.cpp
};

constexpr u32 csc1_record_bytes = 324;  // counted for the record; a fixed rule needs nothing more
constexpr u32 csc1_stored = 4;          // samples of a grid point in the handle; the fourth stays 0
static_assert(sizeof(csc1_handle) + record_slack <= csc1_record_bytes);

constexpr u64 csc1_grid_bytes(u64 n, bool prec12) {  // n grid points per axis, 2 ... 255
  return csc1_record_bytes + grid_section_bytes(n, csc1_stored, prec12);
}
static_assert(csc1_grid_bytes(17, false) == 21297 && csc1_grid_bytes(17, true) == 52520);

using csc1_kernel = void(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst);

u32 csc1_select_kernel(csc1_rule rule, u32 flags, bool bounded);
csc1_kernel* csc1_kernel_of(const csc1_handle& h);

}  // namespace vrk
