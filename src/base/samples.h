// Samples: their widths, and access to 16-bit samples at any address.
#pragma once

#include <cstring>

#include "base/integers.h"

namespace vrk {

// What holds a sample of so many bits. There is no general definition: code for a width that is not listed here does
// not compile.
template <int bits>
struct sample_width;
template <>
struct sample_width<8> {
  using sample = u8;
};
template <>
struct sample_width<10> {
  using sample = u16;
};
template <>
struct sample_width<12> {
  using sample = u16;
};
template <>
struct sample_width<16> {
  using sample = u16;
};

template <int bits>
using sample_of = typename sample_width<bits>::sample;

// A level in another width. Widening repeats the top bits, so that full scale stays full scale; narrowing is a plain
// shift. Of a value beyond full scale the low bits remain.
template <int from, int to>
constexpr sample_of<to> rescale(u32 v) {
  static_assert(sizeof(sample_of<from>) <= sizeof(v) && to <= 2 * from);
  if constexpr (to <= from) {
    return sample_of<to>(v >> (from - to));
  } else {
    return sample_of<to>(v << (to - from) | v >> (2 * from - to));
  }
}
static_assert(rescale<8, 10>(255) == 1023 && rescale<8, 12>(0x81) == 0x818 && rescale<10, 12>(0x201) == 0x806);
static_assert(rescale<10, 16>(1023) == 65535 && rescale<12, 16>(0x123) == 0x1231 && rescale<16, 12>(0x1234) == 0x123);

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
