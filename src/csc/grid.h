// The colour grid of both converters: three axes of uneven spacing with the tables that find a level's cell on them,
// and the grid points.
#pragma once

#include "base/address_as.h"
#include "base/byte_view.h"
#include "base/carver.h"
#include "base/ref.h"
#include "csc/decode_grid.h"
#include "csc/widths.h"

namespace vrk {

// One input axis. A cell is the stretch between two neighbouring positions; levels beyond the last position belong to
// the last cell.
struct grid_axis {
  ref<u8> axis;    // N positions of working precision, strictly increasing
  ref<u8> index;   // cell number, 0 ... N - 2, of every input level
  ref<u32> recip;  // N - 1 entries: 2^16 (8-bit) or 2^22 (12-bit precision) over the cell's width, truncated
};

// The part of a handle's record that both converters share.
struct color_grid {
  grid_axis axes[3];  // R, G, B
  ref<u8> points;     // N * N * N points of working precision, B index fastest
  u32 grid_points;    // N
  u32 bounded;        // 1 when the rows for bounded grids serve this one (see tetra_sse2.h)
};

// One axis as a kernel works with it. Points hold `stored` samples.
template <int work>
struct grid_axis_view {
  const u8* index;
  const sample_of<work>* axis;
  const u32* recip;
  u32 stride;  // bytes from one grid point to the next along this axis

  grid_axis_view(const color_grid& grid, u32 a, u32 stored)
      : index(grid.axes[a].index.get()),
        axis(address_as<const sample_of<work>>(grid.axes[a].axis.get())),
        recip(grid.axes[a].recip.get()),
        stride(stored * u32(sizeof(sample_of<work>))) {
    for (; a < 2; ++a) stride *= grid.grid_points;
  }
};

// The highest grid point, which is what white becomes.
template <int work>
const u8* last_point(const color_grid& grid, u32 stored) {
  const u32 n = grid.grid_points;
  return grid.points.get() + (n * n * n - 1) * stored * sizeof(sample_of<work>);
}

// What a table's header says about its grid.
struct grid_plan {
  u32 n;                        // grid points per axis, 2 ... 255
  const grid_storage* storage;  // how the points are stored
  const grid_format* format;    // samples of a point, in the table and in the handle
};

// Bytes of the ten sections after the record, each with what its alignment can cost.
constexpr u64 grid_section_bytes(u64 n, u64 stored_samples, bool prec12) {
  const u64 s = prec12 ? 2 : 1, levels = prec12 ? 4096 : 256;
  const u64 axes = 3 * s * n, points = stored_samples * s * n * n * n, index = 3 * levels, recip = 3 * 4 * (n - 1);
  return axes + points + index + recip + 10 * section_slack;
}

// Reads the header from offset 8 on (channel counts, N, encoding). `formats` are the channel counts that this kind of
// table may have, `delta` is the code of its delta encoding.
bool check_grid_header(byte_view& image, std::span<const grid_format> formats, u8 delta, grid_plan& plan);

// Takes the ten sections and fills them from the table's body, which begins at offset 12. `flags` as adjusted.
bool build_grid(const grid_plan& plan, byte_view& image, u32 flags, carver& block, color_grid& grid);

}  // namespace vrk
