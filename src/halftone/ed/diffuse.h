// The diffusion step: one template for every plane count, sample width, precision and scan direction.
#pragma once

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/samples.h"
#include "halftone/ed/ed_handle.h"

namespace vrk {

struct ed_widths {
  int in, work;  // bits of a sample and of a working value

  constexpr bool carries() const { return work == 10; }  // rows belong to quarters of the error
  constexpr i32 range() const { return 1 << work; }
  constexpr int sample_bytes() const { return in / 8; }
  u32 load(const u8* p) const { return in == 16 ? load_sample<u16>(p) : *p; }
  constexpr i32 widen(u32 sample) const {
    if (in == 16) return i32(sample >> 6);
    return work == 10 ? i32(widen_8_to_10(sample)) : i32(sample);
  }
};

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

// Turns the line's samples into levels. `step`: +1 left to right, -1 right to left.
template <ed_widths W, int planes, int step>
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
  const spread_index* const index = h.index.get() - first_error;
  const spread_row* const spread = h.spread.get();
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
      const u32 sample = W.load(src + (at * planes + p) * W.sample_bytes());
      pending_errors& own = pending[p];
      u32 sum = u32(here[at * planes + p]) + (own.ahead >> 16);
      if constexpr (W.carries()) sum += own.carry_of_next();
      const offset error = i16(sum);
      own.ahead <<= 16;
      u32 two_back = own.below >> 16;
      own.below <<= 16;
      own.carry <<= 8;
      u8 level = 0;
      if (sample != 0 || error != 0) {
        const offset value = W.widen(sample) + error;
        const std::size_t entry = std::size_t(error + (W.widen(sample) - modulation[p] + W.range()));
        const u8* const lut = level_lut + p * 3 * W.range();
        offset rest;
        if (entry < unchecked_values) [[likely]] {
          level = lut[entry];
          rest = value - level_values[p][level];
        } else {
          level = lut[std::clamp<offset>(offset(entry), 0, 3 * W.range() - 1)];
          rest = std::clamp<offset>(value - level_values[p][level], -1024, 1023);
        }
        const spread_index& of_rest = index[rest];
        const spread_row& row = spread[of_rest.row];
        own.ahead += row.ahead;
        own.below += row.below;
        two_back += row.two_back;
        if constexpr (W.carries()) own.carry += u32(i32(of_rest.carry));
      }
      add_error(below[at * planes + p - 2 * across], two_back);
      level_line[p][at] = level;
    }
  }

  std::memset(here, 0, std::size_t(width) * planes * sizeof(i16));  // the block's errors are used up
  for (int p = 0; p < planes; ++p) settle(pending[p], here + at * planes + p, below + at * planes + p, across);
}

}  // namespace vrk
