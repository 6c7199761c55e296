// The two tables of error diffusion: parameters "edpr" and distribution "edtb".
#pragma once

#include <array>
#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

// One ink plane. It is in use when it has levels. Everything lies on the 10-bit scale 0 ... 1023.
struct ed_plane {
  std::optional<unsigned> level_count{};               // as many as `level_values` holds, unless set
  unsigned bits = 1;                                   // per output pixel: 1, 2 or 4
  unsigned scale_x = 1, scale_y = 1;                   // extended form: dots across (1, 2, 4), output lines (1 ... 4)
  std::vector<std::uint16_t> level_values{};           // the input value that each level stands for, ascending
  std::vector<std::uint16_t> thresholds{};             // one less; threshold i separates level i from level i + 1
  std::vector<std::int8_t> modulation{};               // matrix_width * matrix_height, row by row, taken off the value
  std::vector<std::vector<std::uint16_t>> patterns{};  // extended form, per level: pattern_width * pattern_height cells
};

struct edpr_table {
  std::string magic = "edpr";
  std::string version = "0010";  // from "0020" on the extended form
  unsigned matrix_width = 1, matrix_height = 1;
  unsigned matrix_column_shift = 0, matrix_row_shift = 0;  // per repeat of the matrix
  unsigned pattern_width = 1, pattern_height = 1;          // extended form, cells of 4 * 4 dots
  unsigned pattern_column_shift = 0, pattern_row_shift = 0;
  std::array<ed_plane, 6> planes{};  // table order C, M, Y, K, fifth, sixth; `in_table_order` of kit/planes.h helps

  bool extended() const { return version >= "0020"; }
  bytes encode() const;
};

// Amounts for: next pixel, second next; on the next line two pixels back, one back, below; two columns are not used.
using edtb_row = std::array<std::int16_t, 7>;

struct edtb_table {
  std::string magic = "edtb";
  std::string version = "0010";
  std::optional<unsigned> row_count{};  // as many as `rows` holds, unless set
  unsigned column_count = 7;
  std::vector<edtb_row> rows{};  // row e + 255 belongs to the quantisation error e, 8-bit scale

  bytes encode() const;
};

}  // namespace vrk::kit
