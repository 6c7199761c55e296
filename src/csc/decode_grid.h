// Decoders of the colour tables' grids.
#pragma once

#include "base/byte_view.h"

namespace vrk {

// How the samples of a grid are stored: byte 11 of the table.
struct grid_storage {
  u8 code;
  u8 bits;     // per sample
  bool delta;  // coded differences, plane by plane; else samples back to back, point by point
};

constexpr u8 delta10 = 6, delta8 = 7;
constexpr grid_storage grid_storages[] = {
    {0, 16, false},       // raw16
    {1, 12, false},       // packed12
    {2, 10, false},       // packed10
    {3, 8, false},        // raw8
    {delta10, 10, true},  // second converter
    {delta8, 8, true},    // first converter
};

// Samples of one grid point.
struct grid_format {
  u8 channels;  // in the table
  u8 stored;    // in the handle; what is not filled stays 0
  u8 place[6];  // where the table's samples go, except those of a delta encoding, whose planes stand in handle order
};

// Bytes of a grid whose samples lie back to back. 12-bit fields come in pairs; all other tails end with their byte.
constexpr u64 packed_grid_bytes(u32 bits, u64 samples) {
  if (bits == 12) samples += samples % 2;
  return (bits * samples + 7) / 8;
}
static_assert(packed_grid_bytes(12, 3 * 27) == 117 + 6 && packed_grid_bytes(10, 3 * 27) == 90 + 12);
static_assert(packed_grid_bytes(10, 6 * 27) == 13 * 15 + 8);

// Decodes `points` grid points, stored from offset `pos` of the table on, to a precision of 8 or 12 bits (bytes or
// 16-bit words in `out`). False when the table ends before them, or when a delta sample leaves its range.
bool decode_grid(byte_view& image, u64 pos, const grid_storage& storage, const grid_format& format, u64 points,
                 bool prec12, u8* out);

}  // namespace vrk
