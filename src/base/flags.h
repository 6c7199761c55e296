// The flags words of the create functions; vrk.h names their bits.
#pragma once

#include "base/integers.h"
#include "vrk.h"

namespace vrk {

// Whether any of `bits` is set.
constexpr bool has(u32 flags, u32 bits) { return (flags & bits) != 0; }

// Bits per sample, 8 or 16.
constexpr int input_bits(u32 flags) { return has(flags, VRK_IN16) ? 16 : 8; }
constexpr int output_bits(u32 flags) { return has(flags, VRK_OUT16) ? 16 : 8; }

}  // namespace vrk
