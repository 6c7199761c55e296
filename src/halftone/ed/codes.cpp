#include "halftone/ed/codes.h"

#include "halftone/ed/random.h"

namespace vrk {

void to_three_level_codes(u8* levels, u32 count) {
  for (u32 i = 0; i < count; ++i) levels[i] = u8(levels[i] + (levels[i] != 0));
}

void to_random_codes(u8* levels, u32 count, u32 level_count) {
  if (level_count != 5 && level_count != 6) return;
  static constexpr u8 of_five[] = {1, 5, 6, 7}, of_six[] = {1, 6, 7};
  u32 state = random_state();
  for (u32 i = 0; i < count; ++i) {
    if (levels[i] == 1) {
      const u32 drawn = draw_random(state);
      levels[i] = level_count == 5 ? of_five[drawn % 4] : of_six[drawn % 3];
    } else if (levels[i] == 2 && draw_random(state) % 2 != 0) {
      levels[i] = 8;
    }
  }
  random_state() = state;
}

}  // namespace vrk
