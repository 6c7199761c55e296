// The dither kernels: one scanline of the current block.
#pragma once

#include "halftone/dither/dither_handle.h"

namespace vrk {

// Chooses, by plane count and bits, how the levels of each plane become bytes.
void dither_choose_packings(dither_handle& handle);

using dither_outputs = std::array<u8*, plane_slots>;  // record order; only those of the plane count are looked at

void dither_line(dither_handle& handle, const u8* src, const dither_outputs& out);

}  // namespace vrk
