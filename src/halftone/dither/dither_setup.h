// Set-up of the ordered dither: the table check, the handle's size, and what stands in the handle.
#pragma once

#include "base/byte_view.h"
#include "base/carver.h"
#include "halftone/dither/dither_handle.h"

namespace vrk {

struct dither_plane_header {
  u8 width, height;  // of the threshold matrix
  u8 level_count;    // 0: absent
  u8 bits;           // per output pixel

  constexpr bool present() const { return level_count != 0; }
  constexpr u64 cells() const { return u64{width} * height; }
};

// What a table's header says.
struct dither_plan {
  u32 flags;
  u32 plane_count;
  std::array<dither_plane_header, plane_slots> plane;  // table order
};

constexpr u32 dither_adjust_flags(u32 flags) { return flags | 0x10; }

bool dither_check_table(byte_view& image, u32 flags, dither_plan& plan);

u64 dither_handle_size(const dither_plan& plan);

bool dither_build(const dither_plan& plan, u32 line_width, byte_view& image, carver& block);

}  // namespace vrk
