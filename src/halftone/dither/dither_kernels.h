// The dither kernels: a row for each way in which the levels of a plane become bytes.
#pragma once

#include <span>

#include "base/cpu_level.h"
#include "halftone/dither/dither_handle.h"

namespace vrk {

// Codes of the levels of a three-level K plane of 2 bits.
enum class k_code : u8 { level, low_first /* 0, 1, 3 */, high_first /* 0, 2, 3 */ };

// How the levels of a pixel and of the one before it meet in a byte. It matters where a table has more levels than its
// bits can tell: then a level runs over into the pixel before it.
enum class dither_merge : u8 { fits /* none does, it does not matter */, ors, adds };

// How the levels of one plane become bytes.
struct dither_packing {
  u8 bits;  // per pixel
  dither_merge merge;
  k_code code = k_code::level;  // of K

  // Two levels: there is no interval to look up.
  constexpr bool one_interval() const { return bits == 1 && merge == dither_merge::fits; }
  friend constexpr bool operator==(const dither_packing&, const dither_packing&) = default;
};

// One plane of one scanline of interleaved pixels.
struct dither_plane_line {
  const u8* src;
  u32 src_step;  // bytes from pixel to pixel
  u8* out;
  u32 pixels;
  const u8* level_lut;
  const u8* const* thresholds;  // of every interval: this line's row of its table
  u32 width, column;            // of the matrix; column of the first pixel
};

// A stretch of it, its samples of 8 bits brought together; its levels fit the bits of a pixel.
struct dither_stretch {
  const u8* samples;
  u8* out;
  u32 pixels;
  const u8* thresholds;  // of the first interval: this line's row of its table
  u32 table_bytes;       // from there to the next interval's
  u32 intervals;
  u32 width, column;
};

using dither_kernel = void(const dither_plane_line& line);
using dither_stretch_kernel = void(const dither_stretch& stretch);

struct dither_row {
  dither_packing packing;
  dither_kernel *from_8, *from_16;           // by bits of the input samples
  by_level<dither_stretch_kernel*> stretch;  // 8-bit samples go by this one; null: there is none
  u32 shortest_stretched_line;               // pixels; shorter lines are not worth it
};
std::span<const dither_row> dither_rows();

// Finds the row of every plane, by plane count and bits.
void dither_select_rows(dither_handle& handle);

using dither_outputs = std::array<u8*, plane_slots>;  // record order; only those of the plane count are looked at

// Halftones the block's next scanline.
void dither_line(dither_handle& handle, const u8* src, const dither_outputs& out);

}  // namespace vrk
