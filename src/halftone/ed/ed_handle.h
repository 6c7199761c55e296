// The error diffusion handle.
#pragma once

#include "base/carver.h"
#include "base/ref.h"
#include "halftone/ed/ed_tables.h"
#include "halftone/ed/two_level_tables.h"

namespace vrk {

// Error lines reach this many columns beyond both ends of the line, as far as a pixel sends its quantisation error.
// What lands there, or in columns outside the block, waits unread until a block ends or the next one starts.
constexpr u32 guard_columns = 4;

// A row of the distribution table, arranged so that a line's pending errors are shifted and added two at a time: the
// neighbour that is reached first in the upper half. The lower half that it is added to is empty, so nothing overflows
// from there.
struct distribution_row {
  u32 ahead;     // next pixel << 16 | second next
  u32 below;     // next line: one pixel back << 16 | same column
  u32 two_back;  // next line: two pixels back; lower 16 bits
};

// How a quantisation error is shared out.
struct error_share {
  u16 row;    // of the distribution
  i16 carry;  // the row's remainder in 10-bit precision: digit of the third pixel ahead * 256 + that of the fourth
};

// The shares cover more quantisation errors than are distinguished (-1024 ... 1023, those beyond count as the nearest),
// so that sane level values can never lead outside.
constexpr i32 first_error = -1536, error_count = 3072;

struct ed_handle {
  u32 flags;             // as kept
  u32 width;             // W: pixels of a full line
  u32 planes;            // produced: 1 (K), 4 (K, C, M, Y), 6, or 0; everything below is kept for these only
  u32 kernel;            // row of ed_rows
  u32 unchecked_values;  // values below this (counted from -R) lead to quantisation errors that have a share: 3R, or 0
  u32 same_scale;        // 1 when all planes have the same scale_x and scale_y
  ed_header header;

  // For the kernels that serve any number of levels. Where those for two levels serve, their rows stand instead.
  ref<error_share> shares;             // error_count, from first_error on
  ref<distribution_row> distribution;  // rows of the distribution table
  ref<u8> level_lut;                   // planes of 3R: level of the value entry - R
  two_level_tables two_levels;

  ref<i16> error_line[2];              // even and odd lines: (W + 2 * guard_columns) * planes, columns first
  ref<u16> level_values[plane_slots];  // input value of each level
  ref<i8> modulation;                  // matrix entries * planes, entries first
  ref<u8> matrix_column;               // W: matrix column of each page column
  ref<u8> level_line;                  // planes of W: levels of the current line, block's first pixel first
  ref<u16> cells[plane_slots];         // extended: pattern entries of each level
  ref<u16> cell_line;                  // extended: W, cells of the plane that is being expanded
  ref<u8> pattern_column;              // extended: W

  u32 block_x, block_width;  // columns of the current block
  u32 line_counter;          // number of the line to come
};
static_assert(record_slack + sizeof(ed_handle) + error_count * sizeof(error_share) <= 12739);
static_assert(sizeof(ed_handle) % 8 == 0);  // what follows it lies as well as the handle does

// Of the tables that serve any number of levels.
template <class P>
constexpr u64 table_bytes(P precision, const ed_plan& plan) {
  return error_count * sizeof(error_share) + u64(plan.distribution_rows) * sizeof(distribution_row) +
         u64(plan.planes) * 3 * u32(precision.range);
}

}  // namespace vrk
