// Tetrahedral interpolation, as it is defined.
#pragma once

#include "csc/grid.h"
#include "csc/pixel.h"

namespace vrk {

// A cell is cut into six tetrahedra around the diagonal from its lowest to its highest corner. A pixel's tetrahedron is
// the path along the cell's edges in the order of falling position within the cell: R, G or B first, and so on. The
// value is the first corner plus, for each edge of the path, the pixel's position along that edge times the difference
// of its ends (the slope).
//
// Takes every grid: levels below an axis' first position count as that position; levels beyond the last one extrapolate
// from the last cell, with products that wrap at 32 bits and fractions cut to 16.
//
// by_fraction: axes are ordered by their fractions, not by the products that these are the top bits of. The two can
// differ beyond an axis' end.
template <csc_widths W, u32 stored, bool by_fraction>
class tetra_interpolation {
  using sample = sample_of<W.work>;
  using axis_view = grid_axis_view<W.work>;

 public:
  explicit tetra_interpolation(const color_grid& grid)
      : points_(grid.points.get()), r_(grid, 0, stored), g_(grid, 1, stored), b_(grid, 2, stored) {}

  out_pixel<W.out> operator()(const rgb_pixel<W>& in) const {
    const u8* corner[4] = {points_};
    edge path[3] = {locate(r_, to_working<W>(in.r), corner[0]), locate(g_, to_working<W>(in.g), corner[0]),
                    locate(b_, to_working<W>(in.b), corner[0])};
    put_in_order(path[0], path[1]);
    put_in_order(path[1], path[2]);
    put_in_order(path[0], path[1]);
    for (u32 e = 0; e < 3; ++e) corner[e + 1] = corner[e] + path[e].stride;

    out_pixel<W.out> out{};
    for (u32 c = 0; c < stored; ++c) {
      i32 sum = 0;
      for (u32 e = 0; e < 3; ++e) {
        const i16 slope = i16(sample_at(corner[e + 1], c) - sample_at(corner[e], c));
        sum += slope * path[e].frac;
      }
      out.sample[c] = to_output<W>(u16(sample_at(corner[0], c) + (sum >> precision<W.work>::value_shift)));
    }
    return out;
  }

 private:
  struct edge {
    u32 order;  // product or fraction
    u16 frac;
    u32 stride;
  };

  // Where the level lies within its cell; moves the corner to that cell.
  static edge locate(const axis_view& a, u32 level, const u8*& corner) {
    const u32 cell = a.index[level], low = a.axis[cell];
    const u32 product = (level > low ? level - low : 0) * a.recip[cell];
    const u16 frac = u16(product >> precision<W.work>::frac_shift);
    corner += cell * a.stride;
    return {by_fraction ? frac : product, frac, a.stride};
  }

  static void put_in_order(edge& a, edge& b) {
    if (a.order < b.order) {
      const edge first = b;
      b = a;
      a = first;
    }
  }

  static i32 sample_at(const u8* point, u32 channel) { return load_sample<sample>(point + channel * sizeof(sample)); }

  const u8* points_;
  axis_view r_, g_, b_;
};

}  // namespace vrk
