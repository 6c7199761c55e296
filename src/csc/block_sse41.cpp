#include "csc/block_kernels.h"

#ifdef VRK_HAS_LEVELS
#include <immintrin.h>

#include <cstring>

#include "csc/pixel.h"
#include "csc/tetra_sse2.h"

VRK_BEGIN_LEVEL("sse4.1,ssse3")
namespace vrk::sse41 {

using lanes = u32 __attribute__((vector_size(16)));
constexpr u32 lane_count = 4;

inline lanes load_lanes(const u32* from) { return lanes(_mm_load_si128(address_as<const __m128i>(from))); }
// Low and high words of as many pairs as there are lanes.
inline void load_words(const u64* from, lanes& low, lanes& high) {
  const auto* const pairs = address_as<const __m128i>(from);
  const __m128 a = _mm_castsi128_ps(_mm_load_si128(pairs)), b = _mm_castsi128_ps(_mm_load_si128(pairs + 1));
  low = lanes(_mm_shuffle_ps(a, b, 0x88));
  high = lanes(_mm_shuffle_ps(a, b, 0xDD));
}
inline lanes select_lanes(lanes where, u32 a, lanes b) {
  return lanes(_mm_blendv_epi8(__m128i(b), _mm_set1_epi32(i32(a)), __m128i(where)));
}
inline void store_lanes(u32* to, lanes v) { _mm_store_si128(address_as<__m128i>(to), __m128i(v)); }
inline lanes min_lanes(lanes a, lanes b) { return lanes(_mm_min_epu32(__m128i(a), __m128i(b))); }
inline lanes max_lanes(lanes a, lanes b) { return lanes(_mm_max_epu32(__m128i(a), __m128i(b))); }

struct pair {
  __m128i first, second;
};
inline pair join(__m128i first, __m128i second) { return {first, second}; }
inline __m128i first_of(const pair& a) { return a.first; }
inline __m128i second_of(const pair& a) { return a.second; }
inline pair repeat(const u32* first, const u32* second) {
  return {_mm_set1_epi32(i32(*first)), _mm_set1_epi32(i32(*second))};
}
inline pair exclusive_or_8(const pair& a, i32 b) {
  const __m128i all = _mm_set1_epi8(i8(b));
  return {_mm_xor_si128(a.first, all), _mm_xor_si128(a.second, all)};
}
inline pair multiply_add_8(const pair& a, const pair& b) {
  return {_mm_maddubs_epi16(a.first, b.first), _mm_maddubs_epi16(a.second, b.second)};
}
inline pair multiply_add_16(const pair& a, const pair& b) {
  return {_mm_madd_epi16(a.first, b.first), _mm_madd_epi16(a.second, b.second)};
}
inline pair multiply_add_16(const pair& a, i32 b) {
  const __m128i all = _mm_set1_epi16(i16(b));
  return multiply_add_16(a, {all, all});
}
inline pair add_32(const pair& a, const pair& b) {
  return {_mm_add_epi32(a.first, b.first), _mm_add_epi32(a.second, b.second)};
}
template <int bits>
inline pair shift_right_32(const pair& a) {
  return {_mm_srai_epi32(a.first, bits), _mm_srai_epi32(a.second, bits)};
}
template <int bits>
inline pair shift_right_16(const pair& a) {
  return {_mm_srai_epi16(a.first, bits), _mm_srai_epi16(a.second, bits)};
}
inline pair pack_32(const pair& a, const pair& b) {
  return {_mm_packs_epi32(a.first, b.first), _mm_packs_epi32(a.second, b.second)};
}

#include "csc/block_passes.h"

}  // namespace vrk::sse41
VRK_END_LEVEL

#endif
