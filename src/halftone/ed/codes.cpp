#include "halftone/ed/codes.h"

#include "base/flags.h"
#include "halftone/ed/random.h"
#include "halftone/pack.h"

namespace vrk {

namespace {

// What each level is written as for every residue of the drawn value. The choices are 2, 3 or 4, so 12 serves them all.
struct random_codes {
  static constexpr u32 choices = 12;
  u8 code[6][choices];

  template <std::size_t n>
  explicit constexpr random_codes(const u8 (&of_level_1)[n]) : code{} {
    for (u32 level = 0; level < 6; ++level) {
      for (u32 i = 0; i < choices; ++i) {
        code[level][i] = level == 1 ? of_level_1[i % n] : level == 2 && i % 2 != 0 ? u8{8} : u8(level);
      }
    }
  }
};
constexpr random_codes of_five_levels({1, 5, 6, 7}), of_six_levels({1, 6, 7});

// 0, 1, 2 become 0, 2, 3.
void to_three_level_codes(u8* levels, u32 count) {
  for (u32 i = 0; i < count; ++i) levels[i] = u8(levels[i] + (levels[i] != 0));
}

// A random choice among codes that stand for the same level. Draws one value for every level 1 or 2, in order.
void to_random_codes(u8* levels, u32 count, u32 level_count) {
  const random_codes& codes = level_count == 5 ? of_five_levels : of_six_levels;
  u32 state = random_state();
  for (u32 i = 0; i < count; ++i) {
    const u32 level = levels[i];
    u32 drawn = state;
    levels[i] = codes.code[level][draw_random(drawn) % random_codes::choices];
    state = level == 1 || level == 2 ? drawn : state;  // no branch: levels are hard to foresee
  }
  random_state() = state;
}

}  // namespace

void pack_planes(ed_handle& h, u8* const* out) {
  const u32 width = h.block_width;
  for (u32 p = 0; p < h.planes; ++p) {
    const u32 slot = table_slot[p], bits = h.header.bits[slot], level_count = h.header.level_count[slot];
    u8* const codes = h.level_line.get() + std::size_t(p) * h.width;
    if (p == 0 && level_count == 3 && has(h.flags, VRK_K_CODE3)) to_three_level_codes(codes, width);
    if (bits == 4 && (level_count == 5 || level_count == 6) && has(h.flags, VRK_RANDOM4)) {
      to_random_codes(codes, width, level_count);
    }
    const bool wide = bits < 8 && level_count > 1u << bits;
    (wide ? pack_wide_line : pack_line)(bits, codes, width, out[p]);
  }
}

}  // namespace vrk
