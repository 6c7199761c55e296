#pragma once

#include "frame/carver.h"
#include "halftone/ed/handle.h"

namespace vrk {

// Builds the handle of a plan in its block.
check ed_build(const ed_plan& plan, byte_view params, byte_view spread, carver& block);

}  // namespace vrk
