#include "halftone/pack.h"

#include <algorithm>
#include <cstring>

#include "halftone/planes.h"

namespace vrk {

namespace {

template <u32 bits>
struct packer {
  static constexpr u32 codes = 8 / bits;  // of one output byte

  // By one multiplication: with the first code in the lowest byte of a word, code i is moved up to its place in the
  // word's top byte; all the other products fall beside it or between each other's bits.
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

  static u8 byte_of_wide(const u8* p) {
    u32 packed = 0;
    for (u32 i = 0; i < codes; ++i) packed = packed << bits | p[i];
    return u8(packed);
  }

  template <bool wide>
  static void line(const u8* p, u32 count, u8* out) {
    constexpr auto packed = wide ? byte_of_wide : byte;
    for (; count >= codes; count -= codes, p += codes) *out++ = packed(p);
    if (count == 0) return;
    u8 rest[codes]{};
    std::memcpy(rest, p, count);
    *out = packed(rest);
  }
};

template <bool wide>
void pack(u32 bits, const u8* codes, u32 count, u8* out) {
  switch (bits) {
    case 1:
      return packer<1>::line<wide>(codes, count, out);
    case 2:
      return packer<2>::line<wide>(codes, count, out);
    case 4:
      return packer<4>::line<wide>(codes, count, out);
    default:
      std::fill_n(out, packed_bytes(bits, count), u8{0});  // none, where a line without pixels may be null
  }
}

}  // namespace

void pack_line(u32 bits, const u8* codes, u32 count, u8* out) { pack<false>(bits, codes, count, out); }
void pack_wide_line(u32 bits, const u8* codes, u32 count, u8* out) { pack<true>(bits, codes, count, out); }

}  // namespace vrk
