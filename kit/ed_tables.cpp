#include "kit/ed_tables.h"

namespace vrk::kit {
namespace {

void put_list(bytes& out, const std::vector<std::uint16_t>& values) {
  for (const unsigned v : values) put_be16(out, v);
}

}  // namespace

bytes edpr_table::encode() const {
  bytes out;
  put_text(out, magic);
  put_text(out, version);
  for (const ed_plane& p : planes) put8(out, p.level_count.value_or(unsigned(p.level_values.size())));
  for (const unsigned v : {matrix_width, matrix_height, matrix_column_shift, matrix_row_shift}) put8(out, v);
  for (const ed_plane& p : planes) put8(out, p.bits);
  if (extended()) {
    for (const ed_plane& p : planes) put8(out, p.scale_x);
    for (const ed_plane& p : planes) put8(out, p.scale_y);
    for (const unsigned v : {pattern_width, pattern_height, pattern_column_shift, pattern_row_shift}) put8(out, v);
  }
  for (const ed_plane& p : planes) put_list(out, p.level_values);
  for (const ed_plane& p : planes) put_list(out, p.thresholds);
  for (const ed_plane& p : planes) {
    for (const std::int8_t m : p.modulation) put8(out, std::uint8_t(m));
  }
  if (extended()) {
    for (const ed_plane& p : planes) {
      for (const std::vector<std::uint16_t>& cells : p.patterns) put_list(out, cells);
    }
  }
  return out;
}

bytes edtb_table::encode() const {
  bytes out;
  put_text(out, magic);
  put_text(out, version);
  put_be16(out, row_count.value_or(unsigned(rows.size())));
  put8(out, column_count);
  put8(out, 0);
  for (const edtb_row& row : rows) {
    for (const std::int16_t amount : row) put_be16(out, std::uint16_t(amount));
  }
  return out;
}

}  // namespace vrk::kit
