// Eight 16-bit numbers at once, in what GCC and Clang make of them on every processor.
#pragma once

#include <cstring>

#include "base/integers.h"

namespace vrk {

using u8x16 = u8 __attribute__((vector_size(16)));
using u16x8 = u16 __attribute__((vector_size(16)));
using i16x8 = i16 __attribute__((vector_size(16)));

// At any address.
template <class V>
V load_vector(const void* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V>
void store_vector(void* p, V v) {
  std::memcpy(p, &v, sizeof v);
}

struct widened {
  u16x8 low, high;
};

// Bytes as 16-bit numbers. The bytes of `upper` become the upper halves.
inline widened widen_bytes(u8x16 bytes, u8x16 upper = u8x16{}) {
  return {u16x8(__builtin_shufflevector(bytes, upper, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23)),
          u16x8(__builtin_shufflevector(bytes, upper, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31))};
}

}  // namespace vrk
