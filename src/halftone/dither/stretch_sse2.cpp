#include "halftone/dither/stretch_kernels.h"

#ifdef __SSE2__
#include <emmintrin.h>

#include <cstring>

#include "base/address_as.h"

namespace vrk::sse2 {
namespace {

using vec = __m128i;
constexpr u32 vec_bytes = 16;

inline vec load(const u8* from) { return _mm_loadu_si128(address_as<const vec>(from)); }
inline vec load_parts(const u8* from, u32) { return load(from); }
inline void store(u8* to, vec v) { _mm_storeu_si128(address_as<vec>(to), v); }
inline vec unpack_low(vec a, vec b) { return _mm_unpacklo_epi8(a, b); }
inline vec unpack_high(vec a, vec b) { return _mm_unpackhi_epi8(a, b); }
inline vec all_bytes(u8 v) { return _mm_set1_epi8(char(v)); }
inline vec add(vec a, vec b) { return _mm_add_epi8(a, b); }
// All ones for each byte of a that is not above that of b.
inline vec not_above(vec a, vec b) { return _mm_cmpeq_epi8(_mm_subs_epu8(a, b), _mm_setzero_si128()); }

// Bytes from the 64-bit lanes of four vectors, 8 to a vector, or from the 32-bit lanes.
inline vec bytes_of_64(vec a, vec b, vec c, vec d) {
  const vec words = _mm_packs_epi32(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
  return _mm_packus_epi16(words, words);
}
inline vec bytes_of_32(vec a, vec b, vec c, vec d) {
  return _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
}

// Pairs of levels in a word each, the first in the higher bits.
template <u32 bits>
inline vec pairs(vec level) {
  return _mm_srli_epi16(_mm_mullo_epi16(level, _mm_set1_epi16(i16(0x100 << bits | 1))), 8);
}

// As a code for three levels has them, two bits each.
template <k_code code>
inline vec coded(vec packed) {
  const vec low_bits = all_bytes(0x55), high_as_low = _mm_and_si128(_mm_srli_epi16(packed, 1), low_bits);
  if constexpr (code == k_code::level) return packed;
  if constexpr (code == k_code::low_first) return _mm_or_si128(packed, high_as_low);  // 10 -> 11
  return add(packed, _mm_and_si128(_mm_or_si128(packed, high_as_low), low_bits));     // 01 -> 10, 10 -> 11
}

// 64 levels; at one bit, all ones for those that are 0.
template <dither_packing packing>
inline void pack(const vec (&level)[4], u8* out) {
  if constexpr (packing.bits == 1) {
    const vec bit = _mm_set1_epi64x(0x0102040810204080);
    vec sum[4];  // of eight pixels
    for (u32 i = 0; i < 4; ++i) sum[i] = _mm_sad_epu8(_mm_andnot_si128(level[i], bit), _mm_setzero_si128());
    _mm_storel_epi64(address_as<vec>(out), bytes_of_64(sum[0], sum[1], sum[2], sum[3]));
  } else if constexpr (packing.bits == 2) {
    vec four[4];
    for (u32 i = 0; i < 4; ++i) four[i] = _mm_madd_epi16(pairs<2>(level[i]), _mm_set1_epi32(1 << 16 | 16));
    store(out, coded<packing.code>(bytes_of_32(four[0], four[1], four[2], four[3])));
  } else {
    store(out, _mm_packus_epi16(pairs<4>(level[0]), pairs<4>(level[1])));
    store(out + 16, _mm_packus_epi16(pairs<4>(level[2]), pairs<4>(level[3])));
  }
}

}  // namespace

#include "halftone/dither/stretch_passes.h"

}  // namespace vrk::sse2

#endif
