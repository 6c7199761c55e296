// The first converter: RGB to three samples through a grid, or by a fixed rule to gray, black or posterised colour.
#pragma once

#include "base/cpu_level.h"
#include "csc/grid.h"

namespace vrk {

// How a table converts; the fixed rules need no grid.
enum class csc1_rule : u8 { grid, through, gray, black, solid };
constexpr csc1_rule csc1_rules[] = {csc1_rule::grid, csc1_rule::through, csc1_rule::gray, csc1_rule::black,
                                    csc1_rule::solid};

struct csc1_handle {
  color_grid grid;    // references nothing under a fixed rule
  u32 layout;         // pixel layout of input and output; anything above 3 counts as 0
  u32 flags;          // as adjusted
  u32 row;            // of the family's table (csc1_kernels.h)
  u32 short_run_row;  // for runs that are too short for that one
  cpu_level level;    // of the processor
};

constexpr u32 csc1_record_bytes = 324;  // what the size rule counts for the record
constexpr u32 csc1_stored = 4;          // samples of a grid point in the handle; the fourth stays 0
static_assert(sizeof(csc1_handle) + record_slack <= csc1_record_bytes);

}  // namespace vrk
