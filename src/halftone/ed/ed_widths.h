// The widths that error diffusion works in. Neither template has a general definition, so that a new width does not
// compile before it says everything that depends on it.
#pragma once

#include <algorithm>

#include "base/flags.h"
#include "base/samples.h"
#include "halftone/ed/vectors.h"

namespace vrk {

// Bits of a working value. Tables are on the 10-bit scale, and their rows belong to errors on the 8-bit scale.
template <int bits>
struct ed_precision;

template <>
struct ed_precision<8> {
  static constexpr i32 range = 256;       // R: working values are 0 ... R - 1, with the errors of others -R ... 2R - 1
  static constexpr bool carries = false;  // whether rows leave a remainder of the quantisation error to the carry
  static constexpr u16 level_value(u16 value) { return u16(value >> 2 & 255); }
  static constexpr i8 modulation(i8 value) { return i8(value / 4); }
  static constexpr u32 amount(u16 entry) { return entry; }  // modulo 2^16
  static constexpr i32 row_error(i32 error) { return error; }
};

template <>
struct ed_precision<10> {
  static constexpr i32 range = 1024;
  static constexpr bool carries = true;
  static constexpr u16 level_value(u16 value) { return value; }
  static constexpr i8 modulation(i8 value) { return value; }
  static constexpr u32 amount(u16 entry) { return entry * 4u & 0xFFFF; }
  static constexpr i32 row_error(i32 error) { return error / 4; }
};

// Bits of a sample and of a working value, and the flags, as kept, that ask for them.
template <int sample_bits, int working_bits>
struct ed_widths;

template <>
struct ed_widths<8, 8> : ed_precision<8> {
  static constexpr u32 flags = 0;
  using sample = u8;
  using precision = ed_precision<8>;
  static constexpr i32 widen(u32 sample) { return i32(sample); }
  static u16x8 widen_vector(u16x8 samples) { return samples; }
};

template <>
struct ed_widths<8, 10> : ed_precision<10> {
  static constexpr u32 flags = VRK_PREC10;
  using sample = u8;
  using precision = ed_precision<10>;
  static constexpr i32 widen(u32 sample) { return i32(rescale<8, 10>(sample)); }
  static u16x8 widen_vector(u16x8 samples) { return samples << 2 | samples >> 6; }
};

template <>
struct ed_widths<16, 10> : ed_precision<10> {
  static constexpr u32 flags = VRK_IN16 | VRK_PREC10;
  using sample = u16;
  using precision = ed_precision<10>;
  static constexpr i32 widen(u32 sample) { return i32(sample >> 6); }
  static u16x8 widen_vector(u16x8 samples) { return samples >> 6; }
};

// The row of a quantisation error in a distribution table that has so many.
template <class P>
constexpr i32 distribution_row_of(P precision, i32 error, u32 row_count) {
  return std::clamp(precision.row_error(error) + 255, 0, i32(row_count) - 1);
}

// What the row of a quantisation error / 4 leaves of it, and to which pixels ahead it goes.
struct carry_digits {
  i32 third = 0, fourth = 0;
};
constexpr carry_digits carry_of(i32 error) { return {error % 4 - error % 2, error % 2}; }

// 16-bit samples bring 10-bit precision with them.
constexpr u32 ed_adjust_flags(u32 flags) { return has(flags, VRK_IN16) ? flags | VRK_PREC10 : flags; }

// What `use` makes of the precision that the flags ask for.
template <class Use>
constexpr auto with_precision(u32 flags, Use use) {
  return has(flags, VRK_PREC10) ? use(ed_precision<10>{}) : use(ed_precision<8>{});
}

constexpr u32 ed_value_range(u32 flags) {
  return with_precision(flags, [](auto precision) { return u32(precision.range); });
}

}  // namespace vrk
