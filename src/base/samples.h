// Samples: width conversions, and access to 16-bit samples at any address.
#pragma once

#include <cstring>

#include "base/integers.h"

namespace vrk {

// Widening repeats the top bits, so that full scale stays full scale; narrowing is a plain shift.
constexpr u16 widen_8_to_10(u32 v) { return u16(v << 2 | v >> 6); }
constexpr u16 widen_8_to_12(u32 v) { return u16(v << 4 | v >> 4); }
constexpr u16 widen_8_to_16(u32 v) { return u16(v * 257); }
constexpr u16 widen_10_to_12(u32 v) { return u16(v << 2 | v >> 8); }
constexpr u16 widen_10_to_16(u32 v) { return u16(v << 6 | v >> 4); }
constexpr u16 widen_12_to_16(u32 v) { return u16(v << 4 | v >> 8); }
static_assert(widen_8_to_10(255) == 1023 && widen_8_to_12(255) == 4095 && widen_10_to_12(1023) == 4095);
static_assert(widen_10_to_16(1023) == 65535 && widen_12_to_16(4095) == 65535);

// Samples in the machine's byte order. 16-bit ones may lie at odd addresses.
template <class T>
T load_sample(const u8* p) {
  T v;
  std::memcpy(&v, p, sizeof v);
  return v;
}

template <class T>
void store_sample(u8* p, T v) {
  std::memcpy(p, &v, sizeof v);
}

}  // namespace vrk
