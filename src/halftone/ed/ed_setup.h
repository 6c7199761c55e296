// Building an error diffusion handle from tables that were checked.
#pragma once

#include "base/carver.h"
#include "halftone/ed/ed_handle.h"

namespace vrk {

// Builds the handle of a plan in its block.
bool ed_build(const ed_plan& plan, byte_view params, byte_view distribution, carver& block);

}  // namespace vrk
