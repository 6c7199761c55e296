// Sample widths of a conversion, and the flags that choose them.
#pragma once

#include <type_traits>

#include "base/flags.h"
#include "base/samples.h"

namespace vrk {

// Bits per sample: what the caller passes, what axes and grid hold and interpolation works in, what is written.
struct csc_widths {
  int in, work, out;

  constexpr u32 full() const { return (1u << work) - 1; }           // full scale at working precision
  constexpr int frac_shift() const { return work == 8 ? 9 : 12; }   // product -> fraction
  constexpr int value_shift() const { return work == 8 ? 7 : 10; }  // a whole cell is a fraction of 128 or 1024
};

// No other widths survive `csc_adjust_flags`.
constexpr csc_widths csc_width_rows[] = {{8, 8, 8}, {8, 12, 8}, {8, 12, 16}, {16, 12, 16}, {16, 12, 8}};
constexpr u32 csc_width_count = 5;

template <int bits>
using sample_of = std::conditional_t<bits == 8, u8, u16>;

// 16-bit samples need the higher precision; bit 5 means nothing to a converter.
constexpr u32 csc_adjust_flags(u32 flags) {
  const bool wide = has(flags, VRK_IN16 | VRK_OUT16);
  return (flags & ~VRK_COMPOSE) | (wide ? VRK_PREC12 : 0);
}

// The row of `csc_width_rows` for adjusted flags.
constexpr u32 csc_width_row(u32 flags) {
  if (has(flags, VRK_IN16)) return has(flags, VRK_OUT16) ? 3 : 4;
  if (has(flags, VRK_OUT16)) return 2;
  return has(flags, VRK_PREC12) ? 1 : 0;
}

template <csc_widths W>
constexpr u32 to_working(u32 sample) {
  if constexpr (W.in == 16) return sample >> 4;
  return W.work == 12 ? widen_8_to_12(sample) : sample;
}

// The value is 16 bits wide: beyond the last position of an axis it may leave the range of the working precision.
template <csc_widths W>
constexpr sample_of<W.out> to_output(u16 value) {
  if constexpr (W.out == 16) return widen_12_to_16(value);
  return u8(W.work == 12 ? value >> 4 : value);
}

}  // namespace vrk
