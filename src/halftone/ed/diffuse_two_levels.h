// One line of error diffusion, as diffuse.h says, where every plane has two levels and its tables qualify for
// two_level_tables. A line is done piece by piece. What is known before the piece's first level is worked out in
// vectors, for all planes alike. What has to wait for the level of the pixel before is kept short and free of branches:
// levels are hard to foresee.
#pragma once

#include <algorithm>
#include <utility>

#include "halftone/ed/ed_handle.h"
#include "halftone/ed/ed_widths.h"
#include "halftone/ed/vectors.h"

namespace vrk {

// Entries lie as in the error lines: pixel by pixel from left to right, planes of a pixel side by side.
template <int planes>
struct line_piece {
  static constexpr int entries = 192, pixels = entries / planes;
  static constexpr int pattern = 48;  // entries after which planes and vectors begin together again
  static_assert(entries % pattern == 0 && pattern % planes == 0 && pattern % 16 == 0);

  alignas(16) u16 value[entries];      // without what this line's pixels send; counted as the rows of errors are
  alignas(16) u16 threshold[entries];  // modulated; counted likewise
  alignas(16) u16 below[entries];      // what goes to the next line, two pixels back; raised
  u8 level[planes][pixels];
};

// Amounts on their way: one of the words of two_level_tables.h for every plane.
template <class Word, int planes>
struct amounts_sent {
  Word of[planes];

  explicit amounts_sent(const u16* raised) { std::fill_n(of, planes, nothing(raised)); }
  static Word nothing(const u16* raised) {
    Word word = 0;
    for (u32 i = sizeof(Word) / sizeof(u16); i-- > 0;) word = Word(word << 16 | raised[i]);
    return word;
  }
  bool none(const u16* raised) const { return std::count(of, of + planes, nothing(raised)) == planes; }
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
[[gnu::noinline]] piece_content find_values(const two_level_tables& tables, const u8* samples, const i16* errors,
                                            int count, u16* values) {
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
[[gnu::noinline]] void find_thresholds(const u16x8* unmodulated, const i8* matrix_row, const u8* columns, int pixels,
                                       line_piece<planes>& piece) {
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

// So that a value is kept in a register by itself, not as part of a vector.
template <class T>
void keep_apart(T& value) {
  asm("" : "+r"(value));
}

// The levels of a piece, in the direction of the scan, for `count` planes from plane `begin` on: as many as there are
// registers for.
template <class P, int begin, int count, int step, int planes, class Ahead>
[[gnu::noinline]] void find_levels(const two_level_tables& tables, int pixels, line_piece<planes>& piece,
                                   amounts_sent<Ahead, planes>& all_ahead, amounts_sent<u64, planes>& all_below) {
  using rows = two_level_rows<P>;
  const u8* const amounts = tables.rows.get();
  [&]<std::size_t... p>(std::index_sequence<p...>) {
    Ahead ahead[count]{all_ahead.of[begin + p]...};
    u64 below[count]{all_below.of[begin + p]...};
    const u32 full[count]{tables.full[begin + p]...};
    std::ptrdiff_t pixel = step > 0 ? 0 : pixels - 1;
    for (int left = pixels; left != 0; --left, pixel += step) {
      const auto diffuse = [&](auto plane, Ahead& own_ahead, u64& own_below, u32 own_full) {
        const std::ptrdiff_t at = pixel * planes + begin + plane;
        const std::size_t value = add_value(u16(own_ahead), piece.value[at]);
        const std::size_t error = quantise(value, own_full, piece.threshold[at], piece.level[begin + plane][pixel]);
        Ahead sent_ahead = Ahead(own_ahead >> 16) + rows::ahead(amounts, error);
        keep_apart(sent_ahead);
        own_ahead = sent_ahead;
        u64 sent_below = (own_below >> 16) + rows::below(amounts, error);
        keep_apart(sent_below);
        own_below = sent_below;
        piece.below[at] = u16(sent_below);
        asm("" : "+m"(piece.below[at]));
      };
      (diffuse(std::integral_constant<int, int(p)>{}, ahead[p], below[p], full[p]), ...);
    }
    ((all_ahead.of[begin + p] = ahead[p], all_below.of[begin + p] = below[p]), ...);
  }
  (std::make_index_sequence<count>{});
}

// The same where values may lie anywhere. step: +1 or -1.
template <class W, int planes, class Ahead>
[[gnu::noinline]] void find_levels_of_any(const two_level_tables& tables, const u8* samples, const i16* errors,
                                          int pixels, int step, line_piece<planes>& piece,
                                          amounts_sent<Ahead, planes>& ahead, amounts_sent<u64, planes>& below) {
  using rows = two_level_rows<typename W::precision>;
  using sample = typename W::sample;
  std::ptrdiff_t pixel = step > 0 ? 0 : pixels - 1;
  for (int left = pixels; left != 0; --left, pixel += step) {
    for (int p = 0; p < planes; ++p) {
      const std::ptrdiff_t at = pixel * planes + p;
      const i32 error = i16(u16(errors[at] + u16(ahead.of[p]) - tables.ahead_raised[0]));
      const i32 value = W::widen(load_sample<sample>(samples + at * std::ptrdiff_t(sizeof(sample)))) + error;
      const i32 nearest = std::clamp(value, -rows::first, rows::first - 1 + tables.full[p]);
      const std::size_t row =
          quantise(std::size_t(nearest + rows::first), tables.full[p], piece.threshold[at], piece.level[p][pixel]);
      ahead.of[p] = Ahead(ahead.of[p] >> 16) + rows::ahead(tables.rows.get(), row);
      below.of[p] = (below.of[p] >> 16) + rows::below(tables.rows.get(), row);
      piece.below[at] = u16(below.of[p]);
    }
  }
}

// As diffuse_line.
template <class W, int planes, int step>
void diffuse_two_levels(ed_handle& h, const u8* src) {
  using offset = std::ptrdiff_t;
  using rows = two_level_rows<typename W::precision>;
  const two_level_tables& tables = h.two_levels;
  const offset width = h.block_width;
  constexpr offset across = planes * step;
  const offset block = (offset(h.block_x) + guard_columns) * planes;
  i16* const here = h.error_line[step > 0 ? 0 : 1].get() + block;
  i16* const below = h.error_line[step > 0 ? 1 : 0].get() + block;
  const u8* const matrix_column = h.matrix_column.get() + h.block_x;
  const tile& matrix = h.header.matrix;
  const i8* const matrix_row = h.modulation.get() + offset(matrix.row_of(h.line_counter) * matrix.width) * planes;
  u8* const level_line = h.level_line.get();

  line_piece<planes> piece;
  u16x8 unmodulated[piece.pattern / 8];
  for (int i = 0; i < piece.pattern; ++i) unmodulated[i / 8][i % 8] = u16(tables.threshold[i % planes] + rows::first);
  amounts_sent<typename rows::ahead_row, planes> sent_ahead(tables.ahead_raised);
  amounts_sent<typename rows::below_row, planes> sent_below(tables.below_raised);

  for (offset done = 0; done < width;) {
    const int pixels = int(std::min<offset>(piece.pixels, width - done)), entries = pixels * planes;
    const offset first = step > 0 ? done : width - done - pixels;
    done += pixels;
    const u8* const samples = src + first * planes * offset(sizeof(typename W::sample));
    const i16* const errors = here + first * planes;
    const piece_content content = find_values<W>(tables, samples, errors, entries, piece.value);
    if (content.blank && sent_ahead.none(tables.ahead_raised) && sent_below.none(tables.below_raised)) {
      for (int p = 0; p < planes; ++p) std::memset(level_line + offset(p) * h.width + first, 0, std::size_t(pixels));
      continue;
    }
    find_thresholds(unmodulated, matrix_row, matrix_column + first, pixels, piece);
    if (!content.inside) {
      find_levels_of_any<W>(tables, samples, errors, pixels, step, piece, sent_ahead, sent_below);
    } else if constexpr (planes == 6) {
      find_levels<typename W::precision, 0, 3, step>(tables, pixels, piece, sent_ahead, sent_below);
      find_levels<typename W::precision, 3, 3, step>(tables, pixels, piece, sent_ahead, sent_below);
    } else {
      find_levels<typename W::precision, 0, planes, step>(tables, pixels, piece, sent_ahead, sent_below);
    }
    i16* const reached = below + first * planes - 2 * across;
    for (int i = 0; i < entries; ++i) reached[i] = i16(u16(reached[i]) + piece.below[i] - tables.below_raised[0]);
    for (int p = 0; p < planes; ++p) {
      std::memcpy(level_line + offset(p) * h.width + first, piece.level[p], std::size_t(pixels));
    }
  }

  std::memset(here, 0, std::size_t(width) * planes * sizeof(i16));  // the block's errors are used up
  // What is still on its way goes to the columns beyond the block, and below its last two.
  const offset next = step > 0 ? width * planes : -planes;
  for (int p = 0; p < planes; ++p) {
    const auto arrive = [&](i16& entry, u64 word, int i, const u16* raised) {
      entry = i16(u16(entry) + u16(word >> 16 * i) - raised[i]);
    };
    for (int i = 0; i < int(sizeof(typename rows::ahead_row) / sizeof(u16)); ++i) {
      arrive(here[next + p + i * across], sent_ahead.of[p], i, tables.ahead_raised);
    }
    for (int i = 1; i < 3; ++i) {
      arrive(below[next + p + (i - 3) * across], sent_below.of[p], i, tables.below_raised);
    }
  }
}

}  // namespace vrk
