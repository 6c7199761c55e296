// The two table images of error diffusion: what they say, whether they hold together, how large the handle becomes.
#pragma once

#include "base/byte_view.h"
#include "base/carver.h"
#include "halftone/planes.h"

namespace vrk {

// A matrix that is laid over the page again and again; every repeat across moves its columns on, every repeat down its
// rows. It is anchored to column and line 0 of the page.
struct tile {
  u8 width = 0, height = 0;
  u8 column_shift = 0, row_shift = 0;  // per repeat

  constexpr u32 entries() const { return u32(width) * height; }
  constexpr u8 column_of(u32 x) const { return u8((u64(x / width) * column_shift + x % width) % width); }
  // Heights are powers of two; the AND keeps the row inside for any other as well.
  constexpr u32 row_of(u32 line) const {
    const u32 mask = height - 1u;
    return (line / height * row_shift + (line & mask)) & mask;
  }
};

// What the handle keeps of the parameter table's header. Per plane in table order, unused planes included.
struct ed_header {
  plane_bytes level_count{};  // 0: not in use
  plane_bytes bits{};         // per pixel of a packed line; 1, 2, 4, or another for a plane whose lines stay zero
  plane_bytes scale_x{};      // dots of a pixel across: 1, 2, 4; 1 in the standard form, 0 for a plane not in use there
  plane_bytes scale_y{};      // output lines of an input line: 1 ... 4; likewise
  tile matrix{};              // modulation
  tile pattern{};             // of dot cells; empty in the standard form
  bool extended = false;      // the output is dot cells
};

// Everything that the build needs to know about its images; the lists are known to lie inside them.
struct ed_plan {
  u32 flags = 0;   // as kept
  u32 width = 0;   // pixels of a full line
  u32 planes = 0;  // produced; 0 where the plane count of 1 stands for a K plane that is not in use
  u32 distribution_rows = 0;
  ed_header header;
  std::array<u64, plane_slots> values_at{}, thresholds_at{}, matrix_at{}, patterns_at{};  // offsets, table order
  u32 size = 0;                                                                           // of the handle
};

constexpr u32 distribution_header_bytes = 12;
constexpr u32 distribution_columns = 7;  // entries of a row; five are used

// Fills the plan. A table that is refused leaves it unusable.
bool ed_check_tables(byte_view params, byte_view distribution, u32 width, u32 flags, ed_plan& plan);

}  // namespace vrk
