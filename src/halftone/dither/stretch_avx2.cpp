#include "halftone/dither/stretch_kernels.h"

#if defined(__SSE2__) && defined(VRK_HAS_LEVELS)
#include <immintrin.h>

#include <cstring>

#include "base/address_as.h"

VRK_BEGIN_LEVEL("avx2")
namespace vrk::avx2 {
namespace {

using vec = __m256i;
constexpr u32 vec_bytes = 32;

inline __m128i load_half(const u8* from) { return _mm_loadu_si128(address_as<const __m128i>(from)); }
inline vec load(const u8* from) { return _mm256_loadu_si256(address_as<const vec>(from)); }
// The halves of a vector work side by side.
inline vec load_parts(const u8* from, u32 to_next_half) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(load_half(from)), load_half(from + to_next_half), 1);
}
inline void store(u8* to, vec v) { _mm256_storeu_si256(address_as<vec>(to), v); }
inline vec unpack_low(vec a, vec b) { return _mm256_unpacklo_epi8(a, b); }
inline vec unpack_high(vec a, vec b) { return _mm256_unpackhi_epi8(a, b); }
inline vec all_bytes(u8 v) { return _mm256_set1_epi8(char(v)); }
inline vec add(vec a, vec b) { return _mm256_add_epi8(a, b); }
// All ones for each byte of a that is not above that of b.
inline vec not_above(vec a, vec b) { return _mm256_cmpeq_epi8(_mm256_subs_epu8(a, b), _mm256_setzero_si256()); }

// As a code for three levels has them, two bits each.
template <k_code code>
inline __m128i coded(__m128i packed) {
  const __m128i low_bits = _mm_set1_epi8(0x55), high_as_low = _mm_and_si128(_mm_srli_epi16(packed, 1), low_bits);
  if constexpr (code == k_code::level) return packed;
  if constexpr (code == k_code::low_first) return _mm_or_si128(packed, high_as_low);        // 10 -> 11
  return _mm_add_epi8(packed, _mm_and_si128(_mm_or_si128(packed, high_as_low), low_bits));  // 01 -> 10, 10 -> 11
}

// Bits of 32 pixels, eight to a byte, the first highest.
inline u32 bits_of(vec is_0) {
  const __m128i turned = _mm_set_epi64x(0x08090A0B0C0D0E0F, 0x0001020304050607);
  return ~u32(_mm256_movemask_epi8(_mm256_shuffle_epi8(is_0, _mm256_broadcastsi128_si256(turned))));
}

// 64 levels; at one bit, all ones for those that are 0.
template <dither_packing packing>
inline void pack(const vec (&level)[2], u8* out) {
  if constexpr (packing.bits == 1) {
    store_sample(out, bits_of(level[0]));
    store_sample(out + 4, bits_of(level[1]));
  } else if constexpr (packing.bits == 2) {
    vec four[2];
    for (u32 i = 0; i < 2; ++i) {
      const vec two = _mm256_maddubs_epi16(level[i], _mm256_set1_epi16(1 << 8 | 4));
      four[i] = _mm256_madd_epi16(two, _mm256_set1_epi32(1 << 16 | 16));
    }
    const vec words = _mm256_packs_epi32(four[0], four[1]);
    // Its 64-bit parts are those of the first and the second vector in turn.
    const vec in_order = _mm256_permute4x64_epi64(words, 0b11'01'10'00);
    const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(in_order), _mm256_extracti128_si256(in_order, 1));
    _mm_storeu_si128(address_as<__m128i>(out), coded<packing.code>(bytes));
  } else {
    vec two[2];
    for (u32 i = 0; i < 2; ++i) two[i] = _mm256_maddubs_epi16(level[i], _mm256_set1_epi16(1 << 8 | 16));
    store(out, _mm256_permute4x64_epi64(_mm256_packus_epi16(two[0], two[1]), 0b11'01'10'00));
  }
}

}  // namespace

#include "halftone/dither/stretch_passes.h"

}  // namespace vrk::avx2
VRK_END_LEVEL

#endif
