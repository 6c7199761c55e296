// The kit's tables for the stages that have none of the user's. Each function leaves the user's tables alone, and
// throws user_error when they do not go together with the options.
#pragma once

#include "tools/print/print_tables.h"

namespace vrk::tool {

// RGB or gray to inks. Returns how many inks the second converter makes.
unsigned choose_ink_tables(const ink_options& options, print_tables& tables);

// Completes the curves of post-processing. Returns how many planes come out when `inks` come in.
unsigned choose_plane_curves(bool split, unsigned inks, plane_curves& post);

// The tables of the dither or of error diffusion. samples16: of the halftone's input.
void choose_halftone_tables(const dot_options& options, unsigned planes, bool samples16, print_tables& tables);

}  // namespace vrk::tool
