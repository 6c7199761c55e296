// Levels become codes: what is written for a level, where that is not the level's number.
#pragma once

#include "base/integers.h"

namespace vrk {

// Three-level code of a K plane: 0, 1, 2 become 0, 2, 3.
void to_three_level_codes(u8* levels, u32 count);

// A random choice among 4-bit codes that stand for the same level, of 5 or 6 levels; other counts are left as they are.
// Draws one value for every level 1 or 2, in order.
void to_random_codes(u8* levels, u32 count, u32 level_count);

}  // namespace vrk
