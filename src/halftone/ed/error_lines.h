// What lives on from line to line and from block to block: the errors that pixels sent to the next line.
#pragma once

#include "halftone/ed/ed_handle.h"

namespace vrk {

void forget_errors(ed_handle& h);

// Keeps the errors of a block's columns and forgets all others.
void keep_errors_of_block(ed_handle& h, u32 block_x, u32 block_width);

}  // namespace vrk
