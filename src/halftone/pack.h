// Packing a line of codes.
#pragma once

#include "base/integers.h"

namespace vrk {

// Packs `count` codes of `bits` bits (1, 2 or 4; codes below 2^bits), one to a byte, the first into the most
// significant bits. Writes (bits * count + 7) / 8 bytes; for another `bits` they are zero.
void pack_line(u32 bits, const u8* codes, u32 count, u8* out);

// The same for codes of any size: codes meet by OR. The high bits of one that is too large reach into the pixels before
// it in its byte; those beyond the byte are lost.
void pack_wide_line(u32 bits, const u8* codes, u32 count, u8* out);

}  // namespace vrk
