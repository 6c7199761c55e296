// The flags words of the create functions; vrk.h names their bits.
#pragma once

#include "base/integers.h"
#include "vrk.h"

namespace vrk {

// Whether any of `bits` is set.
constexpr bool has(u32 flags, u32 bits) { return (flags & bits) != 0; }

}  // namespace vrk
