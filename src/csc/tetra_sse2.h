// Tetrahedral interpolation without a branch, all samples of a grid point side by side in an SSE2 vector: which grids
// and runs it serves, the look-up tables that it makes for a run, and the interpolation itself.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <span>

#include "base/address_as.h"
#include "csc/tetra.h"

namespace vrk {

// It serves bounded grids: no level lies below an axis' first position, and no level's fraction, not even beyond the
// last position, reaches this limit. All builds ask, so that handles do not depend on the build.
template <int work>
constexpr u32 fraction_limit() = delete;
template <>
constexpr u32 fraction_limit<8>() {
  return 129;
}
template <>
constexpr u32 fraction_limit<12>() {
  return 4096;
}

// Whether an axis is so. Within a cell fractions never pass the whole cell, so the largest one is that or the fraction
// of full scale.
template <int work>
constexpr bool is_bounded(std::span<const sample_of<work>> axis, std::span<const u32> recip) {
  constexpr u32 full = (1u << work) - 1;
  const u32 last = axis[axis.size() - 2];
  const u64 product = u64(full - last) * recip.back();
  return axis[0] == 0 && product >> precision<work>::frac_shift < fraction_limit<work>();
}

// The look-up tables, 6 KiB of stack, are made anew for every run: a handle has no room for them, and transforms do not
// write it. For runs of fewer pixels they cost more than they save.
constexpr u32 shortest_bounded_run = 192;

#ifdef __SSE2__

// A place on one axis.
struct axis_place {
  // From bit 20 the fraction within the cell, below 2^12; below it the axis' stride, so that the order of three places
  // tells the order of their axes.
  u32 order;
  u32 start;  // the axis' part in the cell's lowest corner, in bytes from the first grid point
};
constexpr int fraction_bit = 20;
constexpr u32 stride_mask = (1u << fraction_bit) - 1;
static_assert(fraction_limit<8>() <= 1 << 12 && fraction_limit<12>() <= 1 << 12);
static_assert((255 * 255 + 255 + 1) * 6 * 2 <= stride_mask);  // 255 grid points of six 16-bit samples

struct grid_place {
  axis_place r, g, b;
};

// The place of a level in its cell. low: lowest level of the cell; scale: what turns a distance above it into the
// fraction, in its place.
inline axis_place place_in(u32 cell, u32 level, u32 low, u32 scale, u32 stride) {
  return {((level - low) * scale & ~stride_mask) | stride, cell * stride};
}
template <int work>
u32 cell_scale(const grid_axis_view<work>& axis, u32 cell) {
  return axis.recip[cell] << (fraction_bit - precision<work>::frac_shift);
}

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
      scale_[cell] = cell_scale(axis, cell);
    }
  }

  axis_place at(u32 level) const {
    const u32 cell = index_[level];
    return place_in(cell, level, low_[cell], scale_[cell], stride_);
  }

 private:
  static constexpr u32 most_cells = 254;

  const u8* index_;
  u32 stride_;
  u32 low_[most_cells], scale_[most_cells];
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
      const grid_axis_view<W.work> axis(grid, a, stored);
      u32 cell = ~0u, low = 0, scale = 0;  // of the level before, which mostly is in the same cell
      for (u32 i = 0; i < 256; ++i) {
        const u32 level = to_working<W>(i);
        if (cell != axis.index[level]) {
          cell = axis.index[level];
          low = axis.axis[cell];
          scale = cell_scale(axis, cell);
        }
        place_[a][i] = place_in(cell, level, low, scale, axis.stride);
      }
    }
  }

  grid_place operator()(const rgb_pixel<W>& in) const { return {place_[0][in.r], place_[1][in.g], place_[2][in.b]}; }

 private:
  axis_place place_[3][256];  // of every input level
};

template <csc_widths W, u32 stored>
using lookup_of = std::conditional_t<W.in == 8, level_lookup<W, stored>, cell_lookup<W, stored>>;

// The samples of two grid points, those of one channel side by side as 16-bit numbers: a0 b0 a1 b1 ...
// Points of six samples are loaded with what lies behind them, up to four bytes: behind the last point of a grid these
// are the handle's index tables.
template <int work, u32 stored>
struct point_pair {
  __m128i low, high;  // channels 0 to 3, 4 and 5

  point_pair(const u8* a, const u8* b) {
    const __m128i x = load(a), y = load(b), zero = _mm_setzero_si128();
    if constexpr (sizeof(sample) == 1) {
      const __m128i both = _mm_unpacklo_epi8(x, y);
      low = _mm_unpacklo_epi8(both, zero);
      high = _mm_unpackhi_epi8(both, zero);
    } else {
      low = _mm_unpacklo_epi16(x, y);
      high = _mm_unpackhi_epi16(x, y);
    }
  }

 private:
  using sample = sample_of<work>;
  static constexpr u32 bytes = stored * sizeof(sample);

  static __m128i load(const u8* point) {
    if constexpr (bytes == 4) return _mm_cvtsi32_si128(load_sample<i32>(point));
    if constexpr (4 < bytes && bytes <= 8) return _mm_loadl_epi64(address_as<const __m128i>(point));
    if constexpr (8 < bytes) return _mm_loadu_si128(address_as<const __m128i>(point));
  }
};

// As rescale<work, out>, of eight 16-bit values; bytes stand in the lower half.
template <int work, int out>
__m128i rescale_vector(__m128i values) = delete;
inline __m128i low_bytes(__m128i values) {
  values = _mm_and_si128(values, _mm_set1_epi16(0xFF));
  return _mm_packus_epi16(values, values);
}
template <>
inline __m128i rescale_vector<8, 8>(__m128i values) {
  return low_bytes(values);
}
template <>
inline __m128i rescale_vector<12, 8>(__m128i values) {
  return low_bytes(_mm_srli_epi16(values, 4));
}
template <>
inline __m128i rescale_vector<12, 16>(__m128i values) {
  return _mm_or_si128(_mm_slli_epi16(values, 4), _mm_srli_epi16(values, 8));
}

// Gives what tetra_interpolation gives: the value of a tetrahedron as the weighted mean of its four corners. Beyond an
// axis' end single weights are negative.
template <csc_widths W, u32 stored>
class bounded_interpolation {
  using pair = point_pair<W.work, stored>;
  using output = out_pixel<W.out>;
  static constexpr int value_shift = precision<W.work>::value_shift;

 public:
  explicit bounded_interpolation(const color_grid& grid) : points_(grid.points.get()), diagonal_(0), lookup_(grid) {
    for (u32 a = 0; a < 3; ++a) diagonal_ += grid_axis_view<W.work>(grid, a, stored).stride;
  }

  output operator()(const rgb_pixel<W>& in) const {
    const grid_place place = lookup_(in);
    const u32 r = place.r.order, g = place.g.order, b = place.b.order;
    // The path goes along the axis of the largest fraction first and along that of the smallest one last.
    const u32 high = std::max(g, b), low = g + b - high;
    const u32 first = std::max(r, high), rest = r + high - first;
    const u32 middle = std::max(rest, low), last = rest + low - middle;
    const u32 f1 = first >> fraction_bit, f2 = middle >> fraction_bit, f3 = last >> fraction_bit;

    const u8* const c0 = points_ + (place.r.start + place.g.start + place.b.start);
    const u8* const c3 = c0 + diagonal_;
    const pair start(c0, c0 + (first & stride_mask)), end(c3 - (last & stride_mask), c3);
    const __m128i start_weights = weights((1u << value_shift) - f1, f1 - f2), end_weights = weights(f2 - f3, f3);
    const auto mean = [&](__m128i at_start, __m128i at_end) {
      const __m128i total = _mm_add_epi32(_mm_madd_epi16(at_start, start_weights), _mm_madd_epi16(at_end, end_weights));
      return _mm_srai_epi32(total, value_shift);
    };
    const __m128i low_means = mean(start.low, end.low);
    const __m128i values = _mm_packs_epi32(low_means, stored == 6 ? mean(start.high, end.high) : low_means);
    output out;
    _mm_store_si128(address_as<__m128i>(out.sample), rescale_vector<W.work, W.out>(values));
    return out;
  }

 private:
  static __m128i weights(u32 a, u32 b) { return _mm_set1_epi32(i32((a & 0xFFFF) | b << 16)); }

  const u8* points_;
  u32 diagonal_;  // bytes from a cell's lowest corner to its highest
  lookup_of<W, stored> lookup_;
};

#else  // other processors interpolate bounded grids as it is defined

template <csc_widths W, u32 stored>
using bounded_interpolation = tetra_interpolation<W, stored, false>;

#endif

// What a grid kernel uses.
template <csc_widths W, u32 stored, bool gray, bool bounded>
using interpolation_of =
    std::conditional_t<bounded, bounded_interpolation<W, stored>, tetra_interpolation<W, stored, gray>>;

}  // namespace vrk
