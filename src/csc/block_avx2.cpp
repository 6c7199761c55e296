#include "csc/block_kernels.h"

#ifdef VRK_HAS_LEVELS
#include <immintrin.h>

#include <cstring>

#include "csc/pixel.h"
#include "csc/tetra_sse2.h"

VRK_BEGIN_LEVEL("avx2")
namespace vrk::avx2 {

using lanes = u32 __attribute__((vector_size(32)));
constexpr u32 lane_count = 8;

inline lanes load_lanes(const u32* from) { return lanes(_mm256_load_si256(address_as<const __m256i>(from))); }
// Low and high words of as many pairs as there are lanes.
inline void load_words(const u64* from, lanes& low, lanes& high) {
  const auto* const pairs = address_as<const __m256i>(from);
  const __m256 a = _mm256_castsi256_ps(_mm256_load_si256(pairs)), b = _mm256_castsi256_ps(_mm256_load_si256(pairs + 1));
  low = lanes(_mm256_permute4x64_epi64(_mm256_castps_si256(_mm256_shuffle_ps(a, b, 0x88)), 0xD8));
  high = lanes(_mm256_permute4x64_epi64(_mm256_castps_si256(_mm256_shuffle_ps(a, b, 0xDD)), 0xD8));
}
inline lanes select_lanes(lanes where, u32 a, lanes b) {
  return lanes(_mm256_blendv_epi8(__m256i(b), _mm256_set1_epi32(i32(a)), __m256i(where)));
}
inline void store_lanes(u32* to, lanes v) { _mm256_store_si256(address_as<__m256i>(to), __m256i(v)); }
inline lanes min_lanes(lanes a, lanes b) { return lanes(_mm256_min_epu32(__m256i(a), __m256i(b))); }
inline lanes max_lanes(lanes a, lanes b) { return lanes(_mm256_max_epu32(__m256i(a), __m256i(b))); }

using pair = __m256i;
inline pair join(__m128i first, __m128i second) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
}
inline __m128i first_of(pair a) { return _mm256_castsi256_si128(a); }
inline __m128i second_of(pair a) { return _mm256_extracti128_si256(a, 1); }
inline pair repeat(const u32* first, const u32* second) {
  return join(_mm_castps_si128(_mm_broadcast_ss(address_as<const float>(first))),
              _mm_castps_si128(_mm_broadcast_ss(address_as<const float>(second))));
}
inline pair exclusive_or_8(pair a, i32 b) { return _mm256_xor_si256(a, _mm256_set1_epi8(i8(b))); }
inline pair multiply_add_8(pair a, pair b) { return _mm256_maddubs_epi16(a, b); }
inline pair multiply_add_16(pair a, pair b) { return _mm256_madd_epi16(a, b); }
inline pair multiply_add_16(pair a, i32 b) { return _mm256_madd_epi16(a, _mm256_set1_epi16(i16(b))); }
inline pair add_32(pair a, pair b) { return _mm256_add_epi32(a, b); }
template <int bits>
inline pair shift_right_32(pair a) {
  return _mm256_srai_epi32(a, bits);
}
template <int bits>
inline pair shift_right_16(pair a) {
  return _mm256_srai_epi16(a, bits);
}
inline pair pack_32(pair a, pair b) { return _mm256_packs_epi32(a, b); }

#include "csc/block_passes.h"

}  // namespace vrk::avx2
VRK_END_LEVEL

#endif
