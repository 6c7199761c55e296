// Samples: width conversions, access to 16-bit samples at any address, and the flag bits by name.
#pragma once

#include <cstring>

#include "frame/types.h"

namespace vrk {

constexpr u32 flag_in16 = 0x01;
constexpr u32 flag_out16 = 0x04;
constexpr u32 flag_mid10 = 0x10;   // pre- and post-processing: 10-bit intermediate values
constexpr u32 flag_prec12 = 0x10;  // converters: 12-bit working precision
constexpr u32 flag_prec10 = 0x10;  // error diffusion: 10-bit working precision
constexpr u32 flag_compose = 0x20;
constexpr u32 flag_invert = 0x40;
constexpr u32 flag_random4 = 0x80;
constexpr u32 flag_k_code3 = 0x100;

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
