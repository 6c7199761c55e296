#include "halftone/ed/diffuse_two_levels.h"

namespace vrk {

void diffuse_pieces(const piece_methods& methods, ed_handle& h, const u8* src) {
  using offset = std::ptrdiff_t;
  const two_level_tables& tables = h.two_levels;
  const int planes = methods.planes, step = methods.step;
  const offset width = h.block_width, across = planes * step;
  const offset block = (offset(h.block_x) + guard_columns) * planes;
  i16* const here = h.error_line[step > 0 ? 0 : 1].get() + block;
  i16* const below = h.error_line[step > 0 ? 1 : 0].get() + block;
  const u8* const matrix_column = h.matrix_column.get() + h.block_x;
  const tile& matrix = h.header.matrix;
  const i8* const matrix_row = h.modulation.get() + offset(matrix.row_of(h.line_counter) * matrix.width) * planes;
  u8* const level_line = h.level_line.get();

  line_piece piece;
  u16x8 unmodulated[piece.pattern / 8];
  for (int i = 0; i < piece.pattern; ++i) unmodulated[i / 8][i % 8] = u16(tables.threshold[i % planes] + methods.first);
  const auto word_of_nothing = [](const u16* raised, int amounts) {
    u64 word = 0;
    while (amounts-- > 0) word = word << 16 | raised[amounts];
    return word;
  };
  const u64 nothing_ahead = word_of_nothing(tables.ahead_raised, methods.ahead_amounts);
  const u64 nothing_below = word_of_nothing(tables.below_raised, 3);
  amounts_sent sent;
  std::fill_n(sent.ahead, planes, nothing_ahead);
  std::fill_n(sent.below, planes, nothing_below);

  for (offset done = 0; done < width;) {
    const int pixels = int(std::min<offset>(piece.pixels(planes), width - done)), entries = pixels * planes;
    const offset first = step > 0 ? done : width - done - pixels;
    done += pixels;
    const i16* const errors = here + first * planes;
    const piece_content content =
        methods.values(tables, src + first * planes * methods.sample_bytes, errors, entries, piece.value);
    const bool blank = content.blank && std::count(sent.ahead, sent.ahead + planes, nothing_ahead) == planes &&
                       std::count(sent.below, sent.below + planes, nothing_below) == planes;
    if (!blank) {
      methods.thresholds(unmodulated, matrix_row, matrix_column + first, pixels, piece);
      if (content.inside) {
        methods.levels(tables, pixels, piece, sent);
      } else {
        methods.levels_of_any(tables, errors, planes, pixels, step, piece, sent);
      }
      i16* const reached = below + first * planes - 2 * across;
      for (int i = 0; i < entries; ++i) reached[i] = i16(u16(reached[i]) + piece.below[i] - tables.below_raised[0]);
    } else {
      std::memset(piece.level, 0, sizeof piece.level);
    }
    for (int p = 0; p < planes; ++p) {
      std::memcpy(level_line + offset(p) * h.width + first, piece.level + p * piece.pixels(planes),
                  std::size_t(pixels));
    }
  }

  std::memset(here, 0, std::size_t(width * planes) * sizeof(i16));  // the block's errors are used up
  // What is still on its way goes to the columns beyond the block, and below its last two.
  const offset next = step > 0 ? width * planes : -planes;
  for (int p = 0; p < planes; ++p) {
    const auto arrive = [&](i16& entry, u64 word, int i, const u16* raised) {
      entry = i16(u16(entry) + u16(word >> 16 * i) - raised[i]);
    };
    for (int i = 0; i < methods.ahead_amounts; ++i) {
      arrive(here[next + p + i * across], sent.ahead[p], i, tables.ahead_raised);
    }
    for (int i = 1; i < 3; ++i) arrive(below[next + p + (i - 3) * across], sent.below[p], i, tables.below_raised);
  }
}

}  // namespace vrk
