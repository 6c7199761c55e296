// Levels become packed codes: the output of a handle of the standard form.
#pragma once

#include "halftone/ed/ed_handle.h"

namespace vrk {

// Writes the codes of the level lines into `out`: for every plane in record order one line of
// (bits * block_width + 7) / 8 bytes. A code is the level's number, except for a K plane of three levels under
// VRK_K_CODE3 and for planes of 5 or 6 levels and 4 bits under VRK_RANDOM4. The level lines are used up.
void pack_planes(ed_handle& h, u8* const* out);

}  // namespace vrk
