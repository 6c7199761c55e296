#include "postproc/four_planes.h"

#ifdef VRK_HAS_LEVELS
#include <immintrin.h>

#include "base/address_as.h"

VRK_BEGIN_LEVEL("avx2")
namespace vrk::avx2 {
namespace {

using vec = __m256i;
constexpr u32 row_bytes = 16, half_rows = 8;

inline __m128i* row_of(u8* table, u32 row) { return address_as<__m128i>(table + row * row_bytes); }

// Each row of 16 bytes becomes what tells it from the row before it; in either half of the table for itself.
inline void tell_rows_apart(u8* table) {
  for (u32 row = 2 * half_rows - 1; row != 0; --row) {
    if (row == half_rows) continue;
    _mm_store_si128(row_of(table, row),
                    _mm_xor_si128(_mm_load_si128(row_of(table, row)), _mm_load_si128(row_of(table, row - 1))));
  }
}

// A shuffle looks up in a row of 16 bytes by the low bits of an index from 0 to 127, and gives 0 for a negative one. An
// index that falls by 16 from row to row becomes negative behind its own row, and by then its lookups add up to that:
// all differences from the first row on. Saturation keeps indexes negative that are so from the beginning.
inline vec look_up(const u8* table, vec index) {
  vec upper_index = _mm256_xor_si256(index, _mm256_set1_epi8(-128)), lower = _mm256_setzero_si256(), upper = lower;
#pragma GCC unroll 8
  for (u32 row = 0; row < half_rows; ++row) {
    const auto* const rows = address_as<const __m128i>(table);
    const vec lower_row = _mm256_broadcastsi128_si256(_mm_load_si128(rows + row));
    const vec upper_row = _mm256_broadcastsi128_si256(_mm_load_si128(rows + half_rows + row));
    lower = _mm256_xor_si256(lower, _mm256_shuffle_epi8(lower_row, index));
    upper = _mm256_xor_si256(upper, _mm256_shuffle_epi8(upper_row, upper_index));
    index = _mm256_subs_epi8(index, _mm256_set1_epi8(row_bytes));
    upper_index = _mm256_subs_epi8(upper_index, _mm256_set1_epi8(row_bytes));
  }
  return _mm256_xor_si256(lower, upper);
}

}  // namespace

void look_up_four_planes(byte_tables& tables, const u8* src, u32 pixel_count, u8* dst) {
  for (u8(&table)[256] : tables.of_plane) tell_rows_apart(table);
  const vec by_plane = _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15));

  for (; pixel_count != 0; pixel_count -= four_plane_step, src += 4 * four_plane_step, dst += 4 * four_plane_step) {
    vec v[4];
    const auto* const from = address_as<const vec>(src);
    for (u32 i = 0; i < 4; ++i) v[i] = _mm256_shuffle_epi8(_mm256_loadu_si256(from + i), by_plane);
    // Planes 0 and 1, then 2 and 3, of half of the pixels each.
    const vec a = _mm256_unpacklo_epi32(v[0], v[1]), b = _mm256_unpacklo_epi32(v[2], v[3]);
    const vec c = _mm256_unpackhi_epi32(v[0], v[1]), d = _mm256_unpackhi_epi32(v[2], v[3]);
    v[0] = look_up(tables.of_plane[0], _mm256_unpacklo_epi64(a, b));
    v[1] = look_up(tables.of_plane[1], _mm256_unpackhi_epi64(a, b));
    v[2] = look_up(tables.of_plane[2], _mm256_unpacklo_epi64(c, d));
    v[3] = look_up(tables.of_plane[3], _mm256_unpackhi_epi64(c, d));

    const vec e = _mm256_unpacklo_epi8(v[0], v[1]), f = _mm256_unpacklo_epi8(v[2], v[3]);
    const vec g = _mm256_unpackhi_epi8(v[0], v[1]), h = _mm256_unpackhi_epi8(v[2], v[3]);
    auto* const to = address_as<vec>(dst);
    _mm256_storeu_si256(to, _mm256_unpacklo_epi16(e, f));
    _mm256_storeu_si256(to + 1, _mm256_unpackhi_epi16(e, f));
    _mm256_storeu_si256(to + 2, _mm256_unpacklo_epi16(g, h));
    _mm256_storeu_si256(to + 3, _mm256_unpackhi_epi16(g, h));
  }
}

}  // namespace vrk::avx2
VRK_END_LEVEL

#endif
