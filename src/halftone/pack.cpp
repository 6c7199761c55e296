#include "halftone/pack.h"

#include <cstring>

#include "halftone/planes.h"

namespace vrk {

namespace {

// The codes of one output byte, the first in the lowest byte of a word, gathered by one multiplication: code i is moved
// up to its place in the word's top byte; all the other products fall beside it or between each other's bits.
template <u32 bits>
struct packer {
  static constexpr u32 codes = 8 / bits;

  static constexpr u64 factor() {
    u64 sum = 0;
    for (u32 i = 0; i < codes; ++i) sum |= u64{1} << ((codes - 1) * (8 + bits) - i * (8 + bits));
    return sum;
  }
  static u8 byte(const u8* p) {
    u64 word = 0;
    for (u32 i = 0; i < codes; ++i) word |= u64(p[i]) << 8 * i;
    return u8(word * factor() >> 8 * (codes - 1));
  }
  static void line(const u8* p, u32 count, u8* out) {
    for (; count >= codes; count -= codes, p += codes) *out++ = byte(p);
    if (count == 0) return;
    u8 rest[codes]{};
    std::memcpy(rest, p, count);
    *out = byte(rest);
  }
};

}  // namespace

void pack_line(u32 bits, const u8* codes, u32 count, u8* out) {
  switch (bits) {
    case 1:
      return packer<1>::line(codes, count, out);
    case 2:
      return packer<2>::line(codes, count, out);
    case 4:
      return packer<4>::line(codes, count, out);
    default:
      std::memset(out, 0, packed_bytes(bits, count));
  }
}

}  // namespace vrk
