// The dither handle: what set-up builds and the kernels read.
#pragma once

#include <array>

#include "base/carver.h"
#include "base/cpu_level.h"
#include "base/flags.h"
#include "base/look_up_index.h"
#include "base/ref.h"
#include "halftone/planes.h"

namespace vrk {

// M: the largest input level.
constexpr u32 dither_top_level(u32 flags) { return index_count(input_bits(flags)) - 1; }

struct dither_plane {
  ref<u16> level_values;  // N input levels at which the output levels begin; none of these in an absent plane
  ref<u16> matrix;        // width * height values, row by row
  // N - 1 tables in matrix order: a sample above its entry gets the interval's upper level. An entry lies within its
  // interval, so that a sample's level is the number of tables whose entry it is above.
  ref<ref<u8>> thresholds;
  ref<u8> level_lut;  // M + 1 entries: the interval 0 ... N - 2 of an input level
  u8 width, height;   // of the matrix
  u8 level_count;     // N; 0: absent
  u8 bits;            // per output pixel
  u8 row;             // of dither_rows
};

struct dither_handle {
  u32 flags;                                    // as kept: with bit 0x10
  std::array<dither_plane, plane_slots> plane;  // table order
  u32 plane_count;                              // 1, 4 or 6
  u32 line_width;                               // pixels
  u32 block_width, block_x;                     // pixels; of the current block
  u32 line_counter;                             // number of the scanline that comes next
  cpu_level level;                              // of the processor
};

// A row of a threshold table. 16-bit input has an entry of two bytes for each column. 8-bit input has one byte, and the
// row twice over: from any column on, it can be read for as many columns as the matrix has.
constexpr u32 threshold_row_bytes(u32 matrix_width) { return 2 * matrix_width; }
// Kernels may read as many bytes of a shorter row: level tables follow behind the last one.
constexpr u32 threshold_read_bytes = 32;

// The size rule counts 972 bytes for the record and for the gaps before the four arrays of every plane.
constexpr u32 dither_fixed_bytes = 972;
static_assert(sizeof(dither_handle) + record_slack + 4 * plane_slots * section_slack <= dither_fixed_bytes);

}  // namespace vrk
