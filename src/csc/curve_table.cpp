#include "csc/curve_table.h"

namespace vrk {
namespace {

template <class sample>
void put_level(std::span<sample> table, u32 level, u16 value) {
  table[level] = sizeof(sample) == 1 ? sample(value >> 8) : sample(value);
}

// Entry n of the curve sits at this 16-bit input level.
constexpr u32 level_of_entry(u32 n) { return rescale<10, 16>(n); }

// Levels between two entries lie on the straight line between them, rounded to the nearest value: the sums are 0.5 to
// 65535.5.
template <class sample>
void join_entries(curve_image& image, std::span<sample> table) {
  u16 from = image.entry(0, 0);
  for (u32 n = 0; n + 1 < curve_image::entries; ++n) {
    const u16 to = image.entry(0, n + 1);
    const u32 start = level_of_entry(n), end = level_of_entry(n + 1);
    const double slope = (double(to) - double(from)) / double(end - start);
    put_level(table, start, from);
    for (u32 level = start + 1; level < end; ++level) {
      const double value = double(level - start) * slope + double(from) + 0.5;
      put_level(table, level, u16(value));
    }
    from = to;
  }
  put_level(table, level_of_entry(curve_image::entries - 1), from);
}

template <class sample>
u8* build(curve_image& image, u32 levels, carver& block) {
  const std::span<sample> table = block.section<sample>(levels);
  if (table.empty()) return nullptr;
  if (levels == 256) {
    for (u32 level = 0; level < 256; ++level) put_level(table, level, image.sample(0, level));
  } else {
    join_entries(image, table);
  }
  return reinterpret_cast<u8*>(table.data());
}

}  // namespace

u8* build_curve_table(curve_image image, u32 flags, carver& block) {
  const u32 levels = curve_table_levels(flags);
  return has(flags, VRK_OUT16) ? build<u16>(image, levels, block) : build<u8>(image, levels, block);
}

}  // namespace vrk
