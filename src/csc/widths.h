// Sample widths of a conversion, and the flags that choose them.
#pragma once

#include <algorithm>
#include <array>

#include "base/flags.h"
#include "base/samples.h"

namespace vrk {

// Interpolation at a working precision of so many bits. There is no general definition: a new precision must say here
// how it computes.
template <int work>
struct precision;
template <>
struct precision<8> {
  static constexpr int frac_shift = 9;   // product of a distance and a reciprocal -> fraction of a cell
  static constexpr int value_shift = 7;  // a whole cell is the fraction 128
};
template <>
struct precision<12> {
  static constexpr int frac_shift = 12;
  static constexpr int value_shift = 10;  // a whole cell is the fraction 1024
};

// Bits per sample: what the caller passes, what axes and grid hold and interpolation works in, what is written.
struct csc_widths {
  int in, work, out;

  constexpr u32 full() const { return (1u << work) - 1; }  // full scale at working precision
  bool operator==(const csc_widths&) const = default;
};

// No other widths survive `csc_adjust_flags`.
constexpr std::array<csc_widths, 5> all_csc_widths{{{8, 8, 8}, {8, 12, 8}, {8, 12, 16}, {16, 12, 16}, {16, 12, 8}}};

// 16-bit samples need the higher precision; bit 5 means nothing to a converter.
constexpr u32 csc_adjust_flags(u32 flags) {
  const bool wide = has(flags, VRK_IN16 | VRK_OUT16);
  return (flags & ~VRK_COMPOSE) | (wide ? VRK_PREC12 : 0);
}

// The widths that adjusted flags choose.
constexpr csc_widths csc_widths_of(u32 flags) {
  return {has(flags, VRK_IN16) ? 16 : 8, has(flags, VRK_PREC12) ? 12 : 8, has(flags, VRK_OUT16) ? 16 : 8};
}

// Whether `works` holds for every choice of widths that flags can make.
template <class Works>
consteval bool holds_for_all_csc_widths(Works works) {
  constexpr u32 bits = VRK_IN16 | VRK_OUT16 | VRK_PREC12;
  for (u32 flags = 0; flags <= bits; ++flags) {
    if (!works(csc_widths_of(csc_adjust_flags(flags & bits)))) return false;
  }
  return true;
}

// A family's table: the rows that `rows_of.operator()<W>()` has for each of the widths.
template <class RowsOf>
consteval auto rows_of_all_csc_widths(RowsOf rows_of) {
  using rows_of_one = decltype(rows_of.template operator()<all_csc_widths[0]>());
  constexpr std::size_t per_widths = std::tuple_size_v<rows_of_one>;
  std::array<typename rows_of_one::value_type, per_widths * all_csc_widths.size()> rows{};
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    (std::ranges::copy(rows_of.template operator()<all_csc_widths[i]>(), rows.begin() + i * per_widths), ...);
  }
  (std::make_index_sequence<all_csc_widths.size()>());
  return rows;
}

template <csc_widths W>
constexpr u32 to_working(u32 sample) {
  return rescale<W.in, W.work>(sample);
}

// The value is 16 bits wide: beyond the last position of an axis it may leave the range of the working precision.
template <csc_widths W>
constexpr sample_of<W.out> to_output(u16 value) {
  return rescale<W.work, W.out>(value);
}

}  // namespace vrk
