// One line of error diffusion. For every pixel in the direction of the scan, and for every plane:
//   value              = sample at working precision + what other pixels have sent to this one
//   level              = the one between whose thresholds value - modulation lies: modulation moves thresholds only
//   quantisation error = value - input value that the level stands for
// A sample of 0 to which nothing was sent gets level 0 and sends nothing. Any other pixel sends what the distribution
// table has in the row of its quantisation error: amounts for the next pixel, the second next, and on the next line for
// two pixels back, one back and the same column, where next and back follow the scan.
// In 10-bit precision there is one row for every quantisation error / 4, and its amounts count four times. The
// remainder is the carry: without its odd rest it goes to the third next pixel, and the odd rest to the fourth. All
// division rounds toward zero.
#pragma once

#include <algorithm>
#include <cstring>

#include "halftone/ed/ed_handle.h"
#include "halftone/ed/ed_widths.h"

namespace vrk {

// What the pixels so far have sent to others and the error lines do not hold yet; everything counts modulo 2^16.
struct pending_errors {
  u32 ahead = 0;  // next pixel << 16 | second next
  u32 below = 0;  // next line, column of the last pixel but one << 16 | of the last pixel
  u32 carry = 0;  // next four pixels, nearest first: signed digits to the base 256, added up

  u32 carry_of_next() const { return u32(i32(carry + 0x800000) >> 24); }  // rounded: digits behind may be negative
};

inline void add_error(i16& entry, u32 amount) { entry = i16(u16(entry) + amount); }

// The end of a line: what is still pending goes to the columns beyond the block and below its last two.
// next, below_next: entries of the column after the last; across: from there to the one after it.
inline void settle(pending_errors pending, i16* next, i16* below_next, std::ptrdiff_t across) {
  add_error(next[0], pending.ahead >> 16);
  add_error(next[across], pending.ahead);
  for (int i = 0; i < 4; ++i, pending.carry <<= 8) add_error(next[i * across], pending.carry_of_next());
  add_error(below_next[-2 * across], pending.below >> 16);
  add_error(below_next[-across], pending.below);
}

// Turns the line's samples into levels. W: an ed_widths. step: +1 left to right, -1 right to left.
template <class W, int planes, int step>
void diffuse_line(ed_handle& h, const u8* src) {
  using offset = std::ptrdiff_t;
  const offset width = h.block_width;
  const offset first = step > 0 ? 0 : width - 1;
  constexpr offset across = planes * step;  // from a pixel's errors to those of the next one

  const offset block = (offset(h.block_x) + guard_columns) * planes;
  i16* const here = h.error_line[step > 0 ? 0 : 1].get() + block;
  i16* const below = h.error_line[step > 0 ? 1 : 0].get() + block;
  const u8* const matrix_column = h.matrix_column.get() + h.block_x;
  const tile& matrix = h.header.matrix;
  const i8* const matrix_row = h.modulation.get() + offset(matrix.row_of(h.line_counter) * matrix.width) * planes;
  const u8* const level_lut = h.level_lut.get();
  const error_share* const shares = h.shares.get() - first_error;
  const distribution_row* const distribution = h.distribution.get();
  const std::size_t unchecked_values = h.unchecked_values;
  const u16* level_values[planes];
  u8* level_line[planes];
  pending_errors pending[planes];
  for (int p = 0; p < planes; ++p) {
    level_values[p] = h.level_values[p].get();
    level_line[p] = h.level_line.get() + offset(p) * h.width;
  }

  offset at = first;
  for (; at != first + step * width; at += step) {
    const i8* const modulation = matrix_row + matrix_column[at] * planes;
#pragma GCC unroll 6  // so that what is pending stays in registers
    for (offset p = 0; p < planes; ++p) {
      const u32 sample = load_sample<typename W::sample>(src + (at * planes + p) * offset(sizeof(typename W::sample)));
      pending_errors& own = pending[p];
      u32 sum = u32(here[at * planes + p]) + (own.ahead >> 16);
      if constexpr (W::carries) sum += own.carry_of_next();
      const offset error = i16(sum);
      own.ahead <<= 16;
      u32 two_back = own.below >> 16;
      own.below <<= 16;
      own.carry <<= 8;
      u8 level = 0;
      if (sample != 0 || error != 0) {
        const offset value = W::widen(sample) + error;
        const std::size_t entry = std::size_t(error + (W::widen(sample) - modulation[p] + W::range));
        const u8* const lut = level_lut + p * 3 * W::range;
        offset quantisation_error;
        if (entry < unchecked_values) [[likely]] {
          level = lut[entry];
          quantisation_error = value - level_values[p][level];
        } else {
          level = lut[std::clamp<offset>(offset(entry), 0, 3 * W::range - 1)];
          quantisation_error = std::clamp<offset>(value - level_values[p][level], -1024, 1023);
        }
        const error_share& share = shares[quantisation_error];
        const distribution_row& row = distribution[share.row];
        own.ahead += row.ahead;
        own.below += row.below;
        two_back += row.two_back;
        if constexpr (W::carries) own.carry += u32(i32(share.carry));
      }
      add_error(below[at * planes + p - 2 * across], two_back);
      level_line[p][at] = level;
    }
  }

  std::memset(here, 0, std::size_t(width) * planes * sizeof(i16));  // the block's errors are used up
  for (int p = 0; p < planes; ++p) settle(pending[p], here + at * planes + p, below + at * planes + p, across);
}

}  // namespace vrk
