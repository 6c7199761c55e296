// The dither kernels: a row for each way in which the levels of a plane become bytes.
#pragma once

#include <span>

#include "halftone/dither/dither_handle.h"

namespace vrk {

// Codes of the levels of a three-level K plane of 2 bits.
enum class k_code : u8 { level, low_first /* 0, 1, 3 */, high_first /* 0, 2, 3 */ };

// How the levels of one plane become bytes. The two ways to merge them differ where a table has more levels than its
// bits can tell: then a level runs over into the pixel before it.
struct dither_packing {
  u8 bits;                      // per pixel
  bool adds;                    // else ORs
  k_code code = k_code::level;  // of K
  bool one_interval = false;    // two levels: there is no interval to look up

  friend constexpr bool operator==(const dither_packing&, const dither_packing&) = default;
};

// One plane of one scanline.
struct dither_plane_line {
  const u8* src;
  u32 src_step;  // bytes from pixel to pixel
  u8* out;
  u32 pixels;
  const u8* level_lut;
  const u16* const* thresholds;  // of every interval: this line's row of its table
  u32 width, column;             // of the matrix; column of the first pixel
};

using dither_kernel = void(const dither_plane_line& line);

struct dither_row {
  dither_packing packing;
  dither_kernel *from_8, *from_16;  // by bits of the input samples
};
std::span<const dither_row> dither_rows();

// Finds the row of every plane, by plane count and bits.
void dither_select_rows(dither_handle& handle);

using dither_outputs = std::array<u8*, plane_slots>;  // record order; only those of the plane count are looked at

// Halftones the block's next scanline.
void dither_line(dither_handle& handle, const u8* src, const dither_outputs& out);

}  // namespace vrk
