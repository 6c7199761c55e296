// Tetrahedral interpolation without a branch, all samples of a grid point side by side in an SSE2 vector.
#pragma once

#include <emmintrin.h>

#include <algorithm>

#include "csc/lookup.h"

namespace vrk {

// The samples of two grid points, those of one channel side by side as 16-bit numbers: a0 b0 a1 b1 ...
// Points of six samples are loaded with what lies behind them, up to four bytes: behind the last point of a grid these
// are the handle's index tables.
template <int work, u32 stored>
struct point_pair {
  __m128i low, high;  // channels 0 to 3, 4 and 5

  point_pair(const u8* a, const u8* b) {
    const __m128i x = load(a), y = load(b), zero = _mm_setzero_si128();
    if constexpr (work == 8) {
      const __m128i both = _mm_unpacklo_epi8(x, y);
      low = _mm_unpacklo_epi8(both, zero);
      high = _mm_unpackhi_epi8(both, zero);
    } else {
      low = _mm_unpacklo_epi16(x, y);
      high = _mm_unpackhi_epi16(x, y);
    }
  }

 private:
  static __m128i load(const u8* point) {
    if constexpr (work == 8 && stored == 4) return _mm_cvtsi32_si128(load_sample<i32>(point));
    if constexpr (work == 8 || stored == 4) return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(point));
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(point));
  }
};

// Gives what tetra_interpolation gives, for bounded grids: the value of a tetrahedron as the weighted mean of its four
// corners. Beyond an axis' end single weights are negative.
template <csc_widths W, u32 stored>
class lane_interpolation {
  using pair = point_pair<W.work, stored>;
  using output = out_pixel<W.out>;

 public:
  explicit lane_interpolation(const color_grid& grid) : points_(grid.points.get()), diagonal_(0), lookup_(grid) {
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
    const __m128i start_weights = weights((1u << W.value_shift()) - f1, f1 - f2), end_weights = weights(f2 - f3, f3);
    const auto mean = [&](__m128i at_start, __m128i at_end) {
      const __m128i total = _mm_add_epi32(_mm_madd_epi16(at_start, start_weights), _mm_madd_epi16(at_end, end_weights));
      return _mm_srai_epi32(total, W.value_shift());
    };
    const __m128i low_means = mean(start.low, end.low);
    return to_pixel(_mm_packs_epi32(low_means, stored == 6 ? mean(start.high, end.high) : low_means));
  }

 private:
  static __m128i weights(u32 a, u32 b) { return _mm_set1_epi32(i32((a & 0xFFFF) | b << 16)); }

  // As to_output, of eight values.
  static output to_pixel(__m128i values) {
    if constexpr (W.out == 16) {
      values = _mm_or_si128(_mm_slli_epi16(values, 4), _mm_srli_epi16(values, 8));
    } else {
      if constexpr (W.work == 12) values = _mm_srli_epi16(values, 4);
      values = _mm_and_si128(values, _mm_set1_epi16(0xFF));
      values = _mm_packus_epi16(values, values);
    }
    output out;
    _mm_store_si128(reinterpret_cast<__m128i*>(out.sample), values);
    return out;
  }

  const u8* points_;
  u32 diagonal_;  // bytes from a cell's lowest corner to its highest
  lookup_of<W, stored> lookup_;
};

}  // namespace vrk
