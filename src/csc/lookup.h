// Where a pixel lies in a bounded grid: look-up tables that a kernel makes for one run of pixels.
#pragma once

#include "csc/grid.h"
#include "csc/pixel.h"

namespace vrk {

// A place on one axis.
struct axis_place {
  // From bit 20 the fraction within the cell, below 2^12; below it the axis' stride, so that the order of three places
  // tells the order of their axes.
  u32 order;
  u32 start;  // the axis' part in the cell's lowest corner, in bytes from the first grid point
};
constexpr int fraction_bit = 20;
constexpr u32 stride_mask = (1u << fraction_bit) - 1;
static_assert(fraction_limit<8> <= 1 << 12 && fraction_limit<12> <= 1 << 12);
static_assert((255 * 255 + 255 + 1) * 6 * 2 <= stride_mask);  // 255 grid points of six 16-bit samples

struct grid_place {
  axis_place r, g, b;
};

// Finds places on one axis for any level: its cell from the handle's index table, what belongs to the cell from here.
template <csc_widths W, u32 stored>
class axis_cells {
 public:
  axis_cells(const color_grid& grid, u32 a) {
    const grid_axis_view<W.work> axis(grid, a, stored);
    index_ = axis.index;
    stride_ = axis.stride;
    for (u32 cell = 0; cell + 1 < grid.grid_points; ++cell) {
      low_[cell] = axis.axis[cell];
      scale_[cell] = axis.recip[cell] << (fraction_bit - W.frac_shift());
    }
  }

  axis_place at(u32 level) const {
    const u32 cell = index_[level];
    return {((level - low_[cell]) * scale_[cell] & ~stride_mask) | stride_, cell * stride_};
  }

 private:
  static constexpr u32 most_cells = 254;

  const u8* index_;
  u32 stride_;
  u32 low_[most_cells];    // lowest level of a cell
  u32 scale_[most_cells];  // what turns a distance above it into the fraction, in its place
};

template <csc_widths W, u32 stored>
class cell_lookup {
 public:
  explicit cell_lookup(const color_grid& grid) : r_(grid, 0), g_(grid, 1), b_(grid, 2) {}

  grid_place operator()(const rgb_pixel<W>& in) const {
    return {r_.at(to_working<W>(in.r)), g_.at(to_working<W>(in.g)), b_.at(to_working<W>(in.b))};
  }

 private:
  axis_cells<W, stored> r_, g_, b_;
};

// For 8-bit input, which has few enough levels to hold the place of each.
template <csc_widths W, u32 stored>
class level_lookup {
 public:
  explicit level_lookup(const color_grid& grid) {
    for (u32 a = 0; a < 3; ++a) {
      const axis_cells<W, stored> cells(grid, a);
      for (u32 level = 0; level < 256; ++level) place_[a][level] = cells.at(to_working<W>(level));
    }
  }

  grid_place operator()(const rgb_pixel<W>& in) const { return {place_[0][in.r], place_[1][in.g], place_[2][in.b]}; }

 private:
  axis_place place_[3][256];
};

template <csc_widths W, u32 stored>
using lookup_of = std::conditional_t<W.in == 8, level_lookup<W, stored>, cell_lookup<W, stored>>;

}  // namespace vrk
