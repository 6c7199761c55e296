#include "halftone/ed/ed_setup.h"

#include <algorithm>

#include "halftone/ed/ed_kernels.h"
#include "halftone/ed/ed_widths.h"

namespace vrk {

namespace {

// The level of every value -R ... 2R - 1: the first whose upper threshold lies above it.
template <class P>
void build_level_lut(P precision, std::span<u8> lut, u32 level_count, const u8* thresholds) {
  auto value = lut.begin();
  for (u32 level = 0; level + 1 < level_count; ++level) {
    const i32 threshold = i16(precision.level_value(load_be16(thresholds + 2 * level)));
    const i32 below = std::clamp(threshold + precision.range, 0, 3 * precision.range);
    const auto end = std::max(value, lut.begin() + below);
    std::fill(value, end, u8(level));
    value = end;
  }
  std::fill(value, lut.end(), u8(level_count - 1));
}

template <class P>
void build_distribution(P precision, std::span<distribution_row> rows, const u8* entries) {
  const auto entry = [&](u32 column) { return precision.amount(load_be16(entries + 2 * column)); };
  for (distribution_row& row : rows) {
    row = {.ahead = entry(0) << 16 | entry(1), .below = entry(3) << 16 | entry(4), .two_back = entry(2)};
    entries += 2 * distribution_columns;
  }
}

template <class P>
void build_shares(P precision, std::span<error_share> shares, u32 row_count) {
  for (i32 i = 0; i < error_count; ++i) {
    const i32 error = std::clamp(first_error + i, -1024, 1023);
    const carry_digits carry = carry_of(error);
    shares[std::size_t(i)] = {u16(distribution_row_of(precision, error, row_count)),
                              i16(carry.third * 256 + carry.fourth)};
  }
}

// Whether every value of -R ... 2R - 1 leaves a quantisation error that has a share, whatever the modulation moved.
bool all_errors_have_shares(std::span<const u8> lut, const u16* level_values, i32 range) {
  for (i32 entry = 0; entry < 3 * range; ++entry) {
    const i32 error = entry - range - level_values[lut[std::size_t(entry)]];
    if (error - 128 < first_error || error + 127 >= first_error + error_count) return false;
  }
  return true;
}

void build_columns(std::span<u8> columns, const tile& matrix) {
  for (std::size_t x = 0; x < columns.size(); ++x) columns[x] = matrix.column_of(u32(x));
}

// Whether every plane produced has the same scale. The first four slots, or all six, are the planes produced where
// there are several.
bool same_scale(const ed_header& header, u32 planes) {
  return planes <= 1 || (all_same(std::span<const u8>(header.scale_x).first(planes)) &&
                         all_same(std::span<const u8>(header.scale_y).first(planes)));
}

// Everything that follows the record, in falling order of alignment, so that no gaps arise.
bool lay_out(const ed_plan& plan, bool two_levels, ed_handle& h, carver& block) {
  const ed_header& header = plan.header;
  const u64 planes = plan.planes, width = plan.width, line = planes * (width + 2 * guard_columns);
  if (two_levels) {
    const u32 bytes = with_precision(plan.flags, [](auto p) { return two_level_rows<decltype(p)>::bytes; });
    h.two_levels.rows = block.take<u8>(bytes).data();
  } else {
    h.shares = block.take<error_share>(error_count).data();
    h.distribution = block.take<distribution_row>(plan.distribution_rows).data();
  }
  h.error_line[0] = block.take<i16>(line).data();  // cleared with the whole block: no error to begin with
  h.error_line[1] = block.take<i16>(line).data();
  for (u32 p = 0; p < planes; ++p) {
    const u32 level_count = header.level_count[table_slot[p]];
    h.level_values[p] = block.take<u16>(level_count).data();
    if (header.extended) h.cells[p] = block.take<u16>(level_count * header.pattern.entries()).data();
  }
  if (header.extended) {
    h.cell_line = block.take<u16>(width).data();
    h.pattern_column = block.take<u8>(width).data();
  }
  h.matrix_column = block.take<u8>(width).data();
  h.modulation = block.take<i8>(planes * header.matrix.entries()).data();
  if (!two_levels) h.level_lut = block.take<u8>(planes * 3 * ed_value_range(plan.flags)).data();
  h.level_line = block.take<u8>(planes * width).data();
  return block.ok();
}

template <class P>
void build_plane(P precision, const ed_plan& plan, const byte_view& params, u32 p, ed_handle& h) {
  const u32 slot = table_slot[p], level_count = plan.header.level_count[slot];
  const u8* const values = params.at(plan.values_at[slot]);
  for (u32 level = 0; level < level_count; ++level) {
    h.level_values[p][level] = precision.level_value(load_be16(values + 2 * level));
  }

  const u8* const matrix = params.at(plan.matrix_at[slot]);
  for (u32 i = 0; i < plan.header.matrix.entries(); ++i) {
    h.modulation[i * h.planes + p] = precision.modulation(i8(matrix[i]));
  }

  if (!h.level_lut) return;
  const std::span<u8> lut(h.level_lut.get() + i32(p) * 3 * precision.range, 3 * precision.range);
  build_level_lut(precision, lut, level_count, params.at(plan.thresholds_at[slot]));
  if (!all_errors_have_shares(lut, h.level_values[p].get(), precision.range)) h.unchecked_values = 0;
}

// Planes that are expanded together leave pixels of level 0 blank, whatever its pattern holds.
void build_patterns(const ed_plan& plan, const byte_view& params, u32 p, ed_handle& h) {
  const u32 slot = table_slot[p], cells_of_level = plan.header.pattern.entries();
  const u8* const patterns = params.at(plan.patterns_at[slot]);
  const u32 blank = h.same_scale != 0 && h.planes > 1 ? cells_of_level : 0;
  for (u32 i = 0; i < plan.header.level_count[slot] * cells_of_level; ++i) {
    h.cells[p][i] = i < blank ? u16{0} : load_be16(patterns + 2 * i);
  }
}

template <class P>
void build_tables(P precision, const ed_plan& plan, const byte_view& params, const byte_view& distribution,
                  ed_handle& h) {
  if (h.two_levels.rows) {
    build_two_level_rows(precision, plan, distribution, h.two_levels);
  } else {
    h.unchecked_values = 3 * precision.range;
    build_shares(precision, {h.shares.get(), error_count}, plan.distribution_rows);
    build_distribution(precision, {h.distribution.get(), plan.distribution_rows},
                       distribution.at(distribution_header_bytes));
  }
  for (u32 p = 0; p < plan.planes; ++p) build_plane(precision, plan, params, p, h);
}

}  // namespace

bool ed_build(const ed_plan& plan, byte_view params, byte_view distribution, carver& block) {
  ed_handle* const made = block.record<ed_handle>();
  if (made == nullptr) return false;
  ed_handle& h = *made;
  h.flags = plan.flags;
  h.width = plan.width;
  h.planes = plan.planes;
  const bool two_levels = with_precision(plan.flags, [&](auto precision) {
    return check_two_levels(precision, plan, params, distribution, h.two_levels);
  });
  h.kernel = ed_select_row(plan.flags, plan.planes, two_levels);
  h.same_scale = same_scale(plan.header, plan.planes);
  h.header = plan.header;
  if (plan.planes == 0) return true;

  if (!lay_out(plan, two_levels, h, block)) return false;
  with_precision(plan.flags, [&](auto precision) { build_tables(precision, plan, params, distribution, h); });
  build_columns({h.matrix_column.get(), plan.width}, plan.header.matrix);
  if (plan.header.extended) {
    build_columns({h.pattern_column.get(), plan.width}, plan.header.pattern);
    for (u32 p = 0; p < plan.planes; ++p) build_patterns(plan, params, p, h);
  }
  return true;
}

}  // namespace vrk
