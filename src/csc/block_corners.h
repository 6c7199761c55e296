// The weighted means of pixels' corners: included by the files of the levels above the base, as block_passes.h is.
// A `pair` is a vector of two pixels, side by side in its halves.

// weights: of c0 in the lowest bits; at 8 bits four bytes in the first word, at 12 bits four 16-bit numbers in both.
struct pixel_corners {
  const u8 *c0, *c1, *c2, *c3;
  const u32 *weights, *more_weights;
};

template <u32 bytes>
inline __m128i load_point(const u8* point) {
  if constexpr (bytes == 4) return _mm_cvtsi32_si128(load_sample<i32>(point));
  if constexpr (4 < bytes && bytes <= 8) return _mm_loadl_epi64(address_as<const __m128i>(point));
  if constexpr (8 < bytes) return _mm_loadu_si128(address_as<const __m128i>(point));
}

// Of channels 0 to 3, or 4 to 7 (upper), the samples of two corners, or of all four, side by side.
template <int work, u32 stored, bool upper>
inline __m128i two_corners(const u8* a, const u8* b) {
  const __m128i x = load_point<stored * sizeof(sample_of<work>)>(a),
                y = load_point<stored * sizeof(sample_of<work>)>(b);
  if constexpr (work == 8) return _mm_unpacklo_epi8(x, y);
  return upper ? _mm_unpackhi_epi16(x, y) : _mm_unpacklo_epi16(x, y);
}
template <u32 stored, bool upper>
inline __m128i four_corners(const pixel_corners& p) {
  const __m128i a = two_corners<8, stored, upper>(p.c0, p.c1), b = two_corners<8, stored, upper>(p.c2, p.c3);
  return upper ? _mm_unpackhi_epi16(a, b) : _mm_unpacklo_epi16(a, b);
}

// Means of four channels of two pixels as 32-bit numbers, at 8 bits before the shift.
//
// There multiply-add takes samples with a sign: they are moved down by 128, and because the weights add up to 128, the
// means come out lower by 128.
template <int work, u32 stored, bool upper>
inline pair weighted_sums(const pixel_corners& p, const pixel_corners& q) {
  const pair weights = repeat(p.weights, q.weights);
  if constexpr (work == 8) {
    const pair samples = join(four_corners<stored, upper>(p), four_corners<stored, upper>(q));
    return multiply_add_16(multiply_add_8(weights, exclusive_or_8(samples, -128)), 1);
  } else {
    const pair a = join(two_corners<12, stored, upper>(p.c0, p.c1), two_corners<12, stored, upper>(q.c0, q.c1));
    const pair b = join(two_corners<12, stored, upper>(p.c2, p.c3), two_corners<12, stored, upper>(q.c2, q.c3));
    const pair more_weights = repeat(p.more_weights, q.more_weights);
    const pair sums = add_32(multiply_add_16(a, weights), multiply_add_16(b, more_weights));
    return shift_right_32<precision<12>::value_shift>(sums);
  }
}

// Two pixels of eight 16-bit means each. The samples of x come first.
template <int work>
inline pair means(pair x, pair y) {
  const pair packed = pack_32(x, y);
  return work == 8 ? shift_right_16<precision<8>::value_shift>(packed) : packed;
}

inline void store(u8* to, __m128i v) { _mm_storeu_si128(address_as<__m128i>(to), v); }
inline void store_low(u8* to, __m128i v) { _mm_storel_epi64(address_as<__m128i>(to), v); }
inline void store_high(u8* to, __m128i v) { store_sample(to, _mm_castsi128_pd(v)[1]); }

// The outputs of sixteen means.
template <int work>
inline __m128i to_bytes(__m128i a, __m128i b) {
  if constexpr (work == 8) return _mm_xor_si128(_mm_packs_epi16(a, b), _mm_set1_epi8(-128));
  const __m128i low = _mm_set1_epi16(0xFF);
  return _mm_packus_epi16(_mm_and_si128(_mm_srli_epi16(a, 4), low), _mm_and_si128(_mm_srli_epi16(b, 4), low));
}

// The outputs of four pixels, one behind the other; up to 16 bytes behind them change.
template <int work, int out_bits, u32 stored>
inline void store_means(const pixel_corners& p0, const pixel_corners& p1, const pixel_corners& p2,
                        const pixel_corners& p3, u8* out) {
  if constexpr (stored == 4) {
    const pair all = means<work>(weighted_sums<work, 4, false>(p0, p2), weighted_sums<work, 4, false>(p1, p3));
    if constexpr (out_bits == 8) {
      store(out, to_bytes<work>(first_of(all), second_of(all)));
    } else {
      store(out, rescale_vector<work, 16>(first_of(all)));
      store(out + 16, rescale_vector<work, 16>(second_of(all)));
    }
  } else {
    constexpr u32 pixel_bytes = stored * sizeof(sample_of<out_bits>);
    const pair a = means<work>(weighted_sums<work, 6, false>(p0, p1), weighted_sums<work, 6, true>(p0, p1));
    const pair b = means<work>(weighted_sums<work, 6, false>(p2, p3), weighted_sums<work, 6, true>(p2, p3));
    if constexpr (out_bits == 8) {
      const __m128i x = to_bytes<work>(first_of(a), second_of(a)), y = to_bytes<work>(first_of(b), second_of(b));
      store_low(out, x);
      store_high(out + pixel_bytes, x);
      store_low(out + 2 * pixel_bytes, y);
      store_high(out + 3 * pixel_bytes, y);
    } else {
      store(out, rescale_vector<work, 16>(first_of(a)));
      store(out + pixel_bytes, rescale_vector<work, 16>(second_of(a)));
      store(out + 2 * pixel_bytes, rescale_vector<work, 16>(first_of(b)));
      store(out + 3 * pixel_bytes, rescale_vector<work, 16>(second_of(b)));
    }
  }
}
