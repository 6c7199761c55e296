// The planes of a halftone: their two orders, how many of them a table produces, and what follows from their bits.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "base/integers.h"

namespace vrk {

constexpr u32 plane_slots = 6;

// Pixels, output lines and everything else that crosses the interface stand in record order K, C, M, Y, fifth, sixth;
// halftone tables keep their planes in table order C, M, Y, K, fifth, sixth.
// table_slot[r]: where the table keeps the plane at position r of the record order.
constexpr std::array<u8, plane_slots> table_slot{3, 0, 1, 2, 4, 5};
constexpr u32 k_table_slot = table_slot[0];

using plane_bytes = std::array<u8, plane_slots>;  // one byte of a table header per plane

// How many planes a handle produces: all six, or K, C, M, Y, or K alone. A plane is in use when it has levels.
// level_counts: table order.
constexpr u32 produced_planes(const plane_bytes& level_counts) {
  if (level_counts[4] != 0 && level_counts[5] != 0) return 6;
  return std::all_of(level_counts.begin(), level_counts.begin() + 4, [](u8 n) { return n != 0; }) ? 4 : 1;
}

// Whether every plane that the handle would produce is in use: a table may give the fifth and sixth without the others,
// or no K at all.
constexpr bool produced_planes_in_use(const plane_bytes& level_counts) {
  for (u32 r = 0; r < produced_planes(level_counts); ++r) {
    if (level_counts[table_slot[r]] == 0) return false;
  }
  return true;
}

// Bytes of one packed line.
constexpr u32 packed_bytes(u32 bits_per_pixel, u32 pixels) { return u32((u64(bits_per_pixel) * pixels + 7) / 8); }

constexpr bool block_fits(u32 block_x, u32 block_width, u32 line_width) {
  return block_width <= line_width && block_x <= line_width - block_width;
}

// Whether the entries, one per produced plane, are the same: line lengths, scales.
template <class T>
constexpr bool all_same(std::span<const T> entries) {
  return std::all_of(entries.begin(), entries.end(), [&](const T& entry) { return entry == entries[0]; });
}

}  // namespace vrk
