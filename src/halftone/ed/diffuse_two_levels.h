// One line of error diffusion, as diffuse.h says, where every plane has two levels and its tables qualify for
// two_level_tables. A line is done piece by piece. What is known before the piece's first level is worked out in
// vectors, for all planes alike. What has to wait for the level of the pixel before is kept short and free of branches:
// levels are hard to foresee.
#pragma once

#include <algorithm>
#include <utility>

#include "base/address_as.h"
#include "halftone/ed/ed_handle.h"
#include "halftone/ed/ed_widths.h"
#include "halftone/ed/vectors.h"

#if defined(__i386__) && defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vrk {

// Entries lie as in the error lines: pixel by pixel from left to right, planes of a pixel side by side.
struct line_piece {
  static constexpr int entries = 192;
  static constexpr int pattern = 48;  // entries after which planes and vectors begin together again
  static_assert(entries % pattern == 0 && pattern % (4 * 6) == 0 && pattern % 16 == 0);
  static constexpr int pixels(int planes) { return entries / planes; }

  alignas(16) u16 value[entries];      // without what this line's pixels send; counted as the rows of errors are
  alignas(16) u16 threshold[entries];  // modulated; counted likewise
  alignas(16) u16 below[entries];      // what goes to the next line, two pixels back; raised
  u8 level[entries];                   // plane by plane
};

// Amounts on their way: words of two_level_tables.h for every plane.
struct amounts_sent {
  u64 ahead[plane_slots], below[plane_slots];
};

// What lies in a piece: whether all is zero, whether every sum of sample and error line lies within the bounds.
struct piece_content {
  bool blank, inside;
};

// The piece's values, from samples and error line.
template <class W>
class value_vectors {
 public:
  explicit value_vectors(const two_level_tables& tables)
      : tables_(tables), offset_(u16(two_level_rows<typename W::precision>::first - tables.ahead_raised[0])) {}

  // 16 entries.
  void operator()(const u8* samples, const i16* errors, u16* values) {
    widened wide;
    if constexpr (sizeof(typename W::sample) == 1) {
      wide = widen_bytes(load_vector<u8x16>(samples));
    } else {
      wide = {load_vector<u16x8>(samples), load_vector<u16x8>(samples + 16)};
    }
    add(W::widen_vector(wide.low), errors, values);
    add(W::widen_vector(wide.high), errors + 8, values + 8);
  }

  piece_content content() const {
    i16 lowest = 0, highest = 0, any = 0;
    for (int i = 0; i < 8; ++i) {
      lowest = std::min(lowest, lowest_[i]), highest = std::max(highest, highest_[i]), any = i16(any | any_[i]);
    }
    return {any == 0, tables_.lowest <= lowest && highest <= tables_.highest};
  }

 private:
  void add(u16x8 samples, const i16* errors, u16* values) {
    const u16x8 error = load_vector<u16x8>(errors), sum = samples + error;
    any_ |= i16x8(samples | error);
    // Sums cannot wrap unless errors are out of bounds themselves, and samples are not negative.
    lowest_ = i16x8(error) < lowest_ ? i16x8(error) : lowest_;
    highest_ = i16x8(error) > highest_ ? i16x8(error) : highest_;
    highest_ = i16x8(sum) > highest_ ? i16x8(sum) : highest_;
    store_vector(values, sum + offset_);
  }

  const two_level_tables& tables_;
  u16 offset_;
  i16x8 lowest_{}, highest_{}, any_{};
};

template <class W>
piece_content find_values(const two_level_tables& tables, const u8* samples, const i16* errors, int count,
                          u16* values) {
  using sample = typename W::sample;
  value_vectors<W> vectors(tables);
  int i = 0;
  for (; i + 16 <= count; i += 16) vectors(samples + std::size_t(i) * sizeof(sample), errors + i, values + i);
  if (i != count) {
    sample last_samples[16]{};
    i16 last_errors[16]{};
    std::memcpy(last_samples, samples + std::size_t(i) * sizeof(sample), std::size_t(count - i) * sizeof(sample));
    std::memcpy(last_errors, errors + i, std::size_t(count - i) * sizeof(i16));
    vectors(reinterpret_cast<const u8*>(last_samples), last_errors, values + i);
  }
  return vectors.content();
}

// columns: of the matrix, for every pixel of the piece.
template <int planes>
void find_thresholds(const u16x8* unmodulated, const i8* matrix_row, const u8* columns, int pixels, line_piece& piece) {
  i8 modulation[piece.entries];
  for (int i = 0; i < pixels; ++i) std::memcpy(modulation + i * planes, matrix_row + columns[i] * planes, planes);
  for (int i = 0; i < pixels * planes; i += piece.pattern) {
#pragma GCC unroll 3
    for (int j = 0; j < piece.pattern; j += 16) {
      // Moved down from the upper halves, they keep their sign.
      const widened wide = widen_bytes(u8x16{}, load_vector<u8x16>(modulation + i + j));
      store_vector(piece.threshold + i + j, u16x8(i16x8(wide.low) >> 8) + unmodulated[j / 8]);
      store_vector(piece.threshold + i + j + 8, u16x8(i16x8(wide.high) >> 8) + unmodulated[j / 8 + 1]);
    }
  }
}

// A value that the last 16 bits say.
inline std::size_t add_value(std::size_t arrived, const u16& value) {
#if defined(__x86_64__) || defined(__i386__)
  asm("addw %1, %w0" : "+r"(arrived) : "m"(value) : "cc");
  return arrived;
#else
  return u16(arrived + value);
#endif
}

// The level of a value, and the quantisation error that it leaves. Compilers would make a jump of it.
inline std::size_t quantise(std::size_t value, u32 full, const u16& threshold, u8& level) {
  std::size_t error = value - full;
#if defined(__x86_64__) || defined(__i386__)
  bool reached;
  asm("cmpw %3, %w2\n\tcmovb %k2, %k0" : "+r"(error), "=@ccae"(reached) : "r"(value), "m"(threshold));
  level = reached;
#else
  level = value >= threshold;
  if (value < threshold) error = value;
#endif
  return error;
}

// One of the words of two_level_tables.h. It stays in a register by itself, not as part of a vector with its sisters.
template <class Word>
class word_on_its_way {
 public:
  explicit word_on_its_way(u64 word) : word_(Word(word)) {}
  u64 word() const { return word_; }
  u16 arriving() const { return u16(word_); }
  void send(Word amounts) {
    Word sum = Word(word_ >> 16) + amounts;
    asm("" : "+r"(sum));
    word_ = sum;
  }

 private:
  Word word_;
};

#if defined(__i386__) && defined(__SSE2__)
// General registers are half as long and too few.
template <>
class word_on_its_way<u64> {
 public:
  explicit word_on_its_way(u64 word) : word_(_mm_loadl_epi64(address_as<const __m128i>(&word))) {}
  u64 word() const {
    u64 word;
    _mm_storel_epi64(address_as<__m128i>(&word), word_);
    return word;
  }
  u16 arriving() const { return u16(_mm_cvtsi128_si32(word_)); }
  void send(u64 amounts) { word_ = _mm_add_epi16(_mm_srli_epi64(word_, 16), word_on_its_way(amounts).word_); }

 private:
  __m128i word_;
};
#endif

// The levels of a piece, in the direction of the scan, for `count` planes from plane `begin` on: as many as there are
// registers for.
template <class P, int planes, int begin, int count, int step>
[[gnu::always_inline]] inline void find_levels_of_planes(const two_level_tables& tables, int pixels, line_piece& piece,
                                                         amounts_sent& sent) {
  using rows = two_level_rows<P>;
  using ahead_row = typename rows::ahead_row;
  const u8* const amounts = tables.rows.get();
  [&]<std::size_t... p>(std::index_sequence<p...>) {
    word_on_its_way<ahead_row> ahead[count]{word_on_its_way<ahead_row>(sent.ahead[begin + p])...};
    word_on_its_way<u64> below[count]{word_on_its_way<u64>(sent.below[begin + p])...};
    const u32 full[count]{tables.full[begin + p]...};
    std::ptrdiff_t pixel = step > 0 ? 0 : pixels - 1;
    for (int left = pixels; left != 0; --left, pixel += step) {
      const auto diffuse = [&](auto plane, auto& own_ahead, auto& own_below, u32 own_full) {
        const std::ptrdiff_t at = pixel * planes + begin + plane;
        u8& level = piece.level[(begin + plane) * piece.pixels(planes) + pixel];
        const std::size_t value = add_value(own_ahead.arriving(), piece.value[at]);
        const std::size_t error = quantise(value, own_full, piece.threshold[at], level);
        own_ahead.send(rows::ahead(amounts, error));
        own_below.send(rows::below(amounts, error));
        piece.below[at] = own_below.arriving();
        asm("" : "+m"(piece.below[at]));
      };
      (diffuse(std::integral_constant<int, int(p)>{}, ahead[p], below[p], full[p]), ...);
    }
    ((sent.ahead[begin + p] = ahead[p].word(), sent.below[begin + p] = below[p].word()), ...);
  }
  (std::make_index_sequence<count>{});
}

template <class P, int planes, int step>
void find_levels(const two_level_tables& tables, int pixels, line_piece& piece, amounts_sent& sent) {
  if constexpr (planes == 6) {
    find_levels_of_planes<P, planes, 0, 3, step>(tables, pixels, piece, sent);
    find_levels_of_planes<P, planes, 3, 3, step>(tables, pixels, piece, sent);
  } else {
    find_levels_of_planes<P, planes, 0, planes, step>(tables, pixels, piece, sent);
  }
}

// The same where values may lie anywhere. errors: the piece's error line.
template <class P>
void find_levels_of_any(const two_level_tables& tables, const i16* errors, int planes, int pixels, int step,
                        line_piece& piece, amounts_sent& sent) {
  using rows = two_level_rows<P>;
  std::ptrdiff_t pixel = step > 0 ? 0 : pixels - 1;
  for (int left = pixels; left != 0; --left, pixel += step) {
    for (int p = 0; p < planes; ++p) {
      const std::ptrdiff_t at = pixel * planes + p;
      const i32 sample = u16(piece.value[at] - (rows::first - tables.ahead_raised[0]) - errors[at]);
      const i32 error = i16(u16(errors[at] + u16(sent.ahead[p]) - tables.ahead_raised[0]));
      const i32 nearest = std::clamp(sample + error, -rows::first, rows::first - 1 + tables.full[p]);
      u8& level = piece.level[p * piece.pixels(planes) + pixel];
      const std::size_t row = quantise(std::size_t(nearest + rows::first), tables.full[p], piece.threshold[at], level);
      sent.ahead[p] = (sent.ahead[p] >> 16) + rows::ahead(tables.rows.get(), row);
      sent.below[p] = (sent.below[p] >> 16) + rows::below(tables.rows.get(), row);
      piece.below[at] = u16(sent.below[p]);
    }
  }
}

// What depends on widths, planes and direction.
struct piece_methods {
  int planes, step, sample_bytes, first, ahead_amounts;
  decltype(&find_values<ed_widths<8, 8>>) values;
  decltype(&find_thresholds<1>) thresholds;
  decltype(&find_levels<ed_precision<8>, 1, 1>) levels;
  decltype(&find_levels_of_any<ed_precision<8>>) levels_of_any;
};

void diffuse_pieces(const piece_methods& methods, ed_handle& h, const u8* src);

// As diffuse_line.
template <class W, int planes, int step>
void diffuse_two_levels(ed_handle& h, const u8* src) {
  using P = typename W::precision;
  using rows = two_level_rows<P>;
  static constexpr piece_methods methods{planes,
                                         step,
                                         sizeof(typename W::sample),
                                         rows::first,
                                         sizeof(typename rows::ahead_row) / sizeof(u16),
                                         find_values<W>,
                                         find_thresholds<planes>,
                                         find_levels<P, planes, step>,
                                         find_levels_of_any<P>};
  diffuse_pieces(methods, h, src);
}

}  // namespace vrk
