// Tetrahedral interpolation without a branch, all samples of a grid point side by side in the lanes of 64-bit words.
#pragma once

#include <algorithm>
#include <bit>

#include "csc/lookup.h"

namespace vrk {

static_assert(std::endian::native == std::endian::little);  // words are loaded whole and taken apart by shifts

// The samples of one grid point, each in a lane that holds its weighted sum: 16 bits at 8-bit precision (255 * 128),
// 32 bits at 12-bit precision. Which samples the words hold, from the lowest lane up:
//   8-bit, 4 samples    0, 2, 1, 3
//   8-bit, 6 samples    0, 2, 4, -    1, 3, 5, -
//   12-bit, 4 samples   0, 2          1, 3
//   12-bit, 6 samples   0, 2          1, 3          4, 5
// Two words are loaded one sample apart, so up to three bytes behind the point: behind the last point of a grid these
// are the handle's index tables.
template <int work, u32 stored>
struct lane_point {
  static constexpr u32 words = work == 8 ? stored / 3 : stored / 2;
  static constexpr u64 mask = work == 8 ? 0x00FF00FF00FF00FF : 0x0000FFFF0000FFFF;

  u64 word[words];

  static lane_point load(const u8* point) {
    if constexpr (words == 1) {
      const u64 x = load_sample<u32>(point);
      return {(x | x << 24) & mask};
    } else {
      lane_point p;
      p.word[0] = load_sample<u64>(point) & mask;
      p.word[1] = load_sample<u64>(point + sizeof(sample_of<work>)) & mask;
      if constexpr (words == 3) {
        const u64 x = load_sample<u32>(point + 8);
        p.word[2] = (x | x << 16) & mask;
      }
      return p;
    }
  }
};

// Gives what tetra_interpolation gives, for bounded grids: the value of a tetrahedron as the weighted mean of its four
// corners. Weights and sums are modulo 2^64. Beyond an axis' end single weights are negative; every lane's result is
// in range all the same, so it comes out right however the terms carry from lane to lane.
template <csc_widths W, u32 stored>
class lane_interpolation {
  using point = lane_point<W.work, stored>;
  using output = out_pixel<W.out, stored>;

 public:
  explicit lane_interpolation(const color_grid& grid) : points_(grid.points.get()), diagonal_(0), lookup_(grid) {
    for (u32 a = 0; a < 3; ++a) diagonal_ += grid_axis_view<W.work>(grid, a, stored).stride;
  }

  output operator()(const rgb_pixel<W>& in) const {
    const grid_place place = lookup_(in);
    const u64 sum = place.r + place.g + place.b;
    const u32 r = u32(place.r), g = u32(place.g), b = u32(place.b);
    // The path goes along the axis of the largest fraction first and along that of the smallest one last.
    const u32 high = std::max(g, b), low = g + b - high;
    const u32 first = std::max(r, high), rest = r + high - first;
    const u32 middle = std::max(rest, low), last = rest + low - middle;
    const u64 f1 = first >> fraction_bit, f2 = middle >> fraction_bit, f3 = last >> fraction_bit;
    const u64 w0 = (u64{1} << W.value_shift()) - f1, w1 = f1 - f2, w2 = f2 - f3, w3 = f3;

    const u8* const c0 = points_ + (sum >> corner_bit);
    const u8* const c3 = c0 + diagonal_;
    const point p0 = point::load(c0), p1 = point::load(c0 + (first & stride_mask)),
                p2 = point::load(c3 - (last & stride_mask)), p3 = point::load(c3);
    point mean;
    for (u32 i = 0; i < point::words; ++i) {
      mean.word[i] = w0 * p0.word[i] + w1 * p1.word[i] + w2 * p2.word[i] + w3 * p3.word[i] + bias;
    }
    return to_pixel(mean);
  }

 private:
  // At 12-bit precision values beyond an axis' end may be negative. 2^30 keeps the lanes positive and stands above all
  // bits that are used.
  static constexpr u64 bias = W.work == 8 ? 0 : 0x4000000040000000;

  // The means, cut to output width and brought back in order.
  static output to_pixel(const point& mean) {
    if constexpr (point::words == 1) {
      const u64 x = mean.word[0] >> 7 & point::mask;
      return {x | x >> 24, 0};
    } else if constexpr (W.work == 8) {
      return {interleaved<7, 8>(mean.word[0], mean.word[1], point::mask), 0};
    } else if constexpr (W.out == 8) {
      constexpr u64 low_byte = 0x000000FF000000FF;  // of the 16-bit value, without its low 4 bits
      const u64 x = interleaved<10 + 4, 8>(mean.word[0], mean.word[1], low_byte);
      u64 rest = 0;
      if constexpr (stored == 6) rest = mean.word[2] >> (10 + 4) & low_byte;
      return {u32(x | x >> 16) | (rest | rest >> 24) << 32, 0};
    } else {
      const u64 x = interleaved<10, 16>(mean.word[0], mean.word[1], point::mask);
      u64 rest = 0;
      if constexpr (stored == 6) rest = mean.word[2] >> 10 & point::mask;
      return {widen(x), u32(widen(rest | rest >> 16))};
    }
  }

  // What `mask` leaves of two words after a shift to the right, that of the second word `apart` bits above.
  template <int shift, int apart>
  static u64 interleaved(u64 even, u64 odd, u64 mask) {
    return (even >> shift & mask) | (odd >> shift & mask) << apart;
  }

  // Four 16-bit values of 12-bit precision to 16 bits, as widen_12_to_16.
  static u64 widen(u64 values) { return (values << 4 & 0xFFF0FFF0FFF0FFF0) | (values >> 8 & 0x00FF00FF00FF00FF); }

  const u8* points_;
  u32 diagonal_;  // bytes from a cell's lowest corner to its highest
  lookup_of<W, stored> lookup_;
};

}  // namespace vrk
