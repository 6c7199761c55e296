// Pixels of four bytes, each through a table of its own.
#pragma once

#include "base/integers.h"
#include "base/level_code.h"

namespace vrk {

struct byte_tables {
  alignas(16) u8 of_plane[4][256];
};

constexpr u32 four_plane_step = 32;  // pixels done at a time

#ifdef VRK_HAS_LEVELS
namespace avx2 {
// pixel_count: a multiple of the step. Overwrites the tables.
void look_up_four_planes(byte_tables& tables, const u8* src, u32 pixel_count, u8* dst);
}  // namespace avx2
#endif

}  // namespace vrk
