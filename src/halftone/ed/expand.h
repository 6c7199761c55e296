// Levels become dot cells: the output of an extended handle.
#pragma once

#include "halftone/ed/ed_handle.h"

namespace vrk {

// Writes the dots of the level lines into `out`: for every plane in record order its scale_y lines of
// (scale_x * block_width + 7) / 8 bytes. The level lines are used up.
void expand_planes(ed_handle& h, u8* const* out);

}  // namespace vrk
