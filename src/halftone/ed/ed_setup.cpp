#include "halftone/ed/ed_setup.h"

#include <algorithm>

#include "base/flags.h"
#include "halftone/ed/ed_kernels.h"

namespace vrk {

namespace {

// Tables are on the 10-bit scale; in 8-bit precision their values go down to its top bits.
u16 level_scale(u32 flags, u16 value) { return has(flags, VRK_PREC10) ? value : u16(value >> 2 & 255); }
i8 modulation_scale(u32 flags, i8 value) { return has(flags, VRK_PREC10) ? value : i8(value / 4); }

// The level of every value -R ... 2R - 1: the first whose upper threshold lies above it.
void build_level_lut(std::span<u8> lut, i32 range, u32 level_count, const u8* thresholds, u32 flags) {
  auto value = lut.begin();
  for (u32 level = 0; level + 1 < level_count; ++level) {
    const i32 threshold = i16(level_scale(flags, load_be16(thresholds + 2 * level)));
    const i32 below = std::clamp(threshold + range, 0, 3 * range);
    const auto end = std::max(value, lut.begin() + below);
    std::fill(value, end, u8(level));
    value = end;
  }
  std::fill(value, lut.end(), u8(level_count - 1));
}

void build_spread(std::span<spread_row> rows, const u8* entries, u32 flags) {
  const u32 scale = has(flags, VRK_PREC10) ? 4 : 1;
  const auto entry = [&](u32 column) { return load_be16(entries + 2 * column) * scale & 0xFFFF; };
  for (spread_row& row : rows) {
    row = {.ahead = entry(0) << 16 | entry(1), .below = entry(3) << 16 | entry(4), .two_back = entry(2)};
    entries += 2 * spread_columns;
  }
}

void build_index(std::span<spread_index> index, u32 row_count, u32 flags) {
  const bool prec10 = has(flags, VRK_PREC10);
  for (i32 i = 0; i < error_count; ++i) {
    const i32 error = std::clamp(first_error + i, -1024, 1023);
    const i32 row = std::clamp((prec10 ? error / 4 : error) + 255, 0, i32(row_count) - 1);
    const i32 carry2 = error % 2, carry4 = error % 4 - carry2;
    index[std::size_t(i)] = {u16(row), i16(carry4 * 256 + carry2)};
  }
}

// Whether every value of -R ... 2R - 1 leaves an error inside the index, whatever the modulation moves it by.
bool errors_inside_index(const u8* lut, const u16* level_values, i32 range) {
  for (i32 entry = 0; entry < 3 * range; ++entry) {
    const i32 error = entry - range - level_values[lut[entry]];
    if (error - 128 < first_error || error + 127 >= first_error + error_count) return false;
  }
  return true;
}

void build_columns(std::span<u8> columns, const tile& matrix) {
  for (std::size_t x = 0; x < columns.size(); ++x) columns[x] = matrix.column_of(u32(x));
}

// Whether every plane produced has the same scale. The first four slots, or all six, are the planes produced.
bool same_scale(const ed_header& header, u32 planes) {
  return planes == 1 || (all_same(std::span<const u8>(header.scale_x).first(planes)) &&
                         all_same(std::span<const u8>(header.scale_y).first(planes)));
}

// Everything that follows the record, in falling order of alignment, so that no gaps arise.
bool lay_out(const ed_plan& plan, ed_handle& h, carver& block) {
  const ed_header& header = plan.header;
  const u64 planes = plan.planes, width = plan.width, line = planes * (width + 2 * guard_columns);
  h.index = block.take<spread_index>(error_count).data();
  h.spread = block.take<spread_row>(plan.spread_rows).data();
  h.error_line[0] = block.take<i16>(line).data();  // cleared with the whole block: no error to begin with
  h.error_line[1] = block.take<i16>(line).data();
  for (u32 p = 0; p < planes; ++p) {
    const u32 level_count = header.level_count[table_slot[p]];
    h.level_values[p] = block.take<u16>(level_count).data();
    if (header.extended) h.cells[p] = block.take<u16>(level_count * header.pattern.cells()).data();
  }
  if (header.extended) {
    h.cell_line = block.take<u16>(width).data();
    h.pattern_column = block.take<u8>(width).data();
  }
  h.matrix_column = block.take<u8>(width).data();
  h.modulation = block.take<i8>(planes * header.matrix.cells()).data();
  h.level_lut = block.take<u8>(planes * 3 * ed_value_range(plan.flags)).data();
  h.level_line = block.take<u8>(planes * width).data();
  return block.ok();
}

void build_plane(const ed_plan& plan, const byte_view& params, u32 p, ed_handle& h) {
  const u32 slot = table_slot[p], level_count = plan.header.level_count[slot];
  const u8* const values = params.at(plan.values_at[slot]);
  for (u32 level = 0; level < level_count; ++level) {
    h.level_values[p][level] = level_scale(plan.flags, load_be16(values + 2 * level));
  }

  const u8* const matrix = params.at(plan.matrix_at[slot]);
  for (u32 cell = 0; cell < plan.header.matrix.cells(); ++cell) {
    h.modulation[cell * h.planes + p] = modulation_scale(plan.flags, i8(matrix[cell]));
  }

  const i32 range = i32(ed_value_range(plan.flags));
  const std::span<u8> lut(h.level_lut.get() + i32(p) * 3 * range, std::size_t(3 * range));
  build_level_lut(lut, range, level_count, params.at(plan.thresholds_at[slot]), plan.flags);
  if (!errors_inside_index(lut.data(), h.level_values[p].get(), range)) h.unchecked_values = 0;
}

// Planes that are expanded together leave pixels of level 0 blank, whatever its pattern holds.
void build_patterns(const ed_plan& plan, const byte_view& params, u32 p, ed_handle& h) {
  const u32 slot = table_slot[p], cells = plan.header.pattern.cells();
  const u8* const patterns = params.at(plan.patterns_at[slot]);
  const u32 blank = h.same_scale != 0 && h.planes > 1 ? cells : 0;
  for (u32 i = 0; i < plan.header.level_count[slot] * cells; ++i) {
    h.cells[p][i] = i < blank ? u16{0} : load_be16(patterns + 2 * i);
  }
}

}  // namespace

bool ed_build(const ed_plan& plan, byte_view params, byte_view spread, carver& block) {
  ed_handle* const made = block.record<ed_handle>();
  if (made == nullptr || !lay_out(plan, *made, block)) return false;
  ed_handle& h = *made;
  h.flags = plan.flags;
  h.width = plan.width;
  h.planes = plan.planes;
  h.kernel = ed_kernel_row(plan.flags, plan.planes);
  h.unchecked_values = 3 * ed_value_range(plan.flags);
  h.same_scale = same_scale(plan.header, plan.planes);
  h.header = plan.header;

  build_index({h.index.get(), error_count}, plan.spread_rows, plan.flags);
  build_spread({h.spread.get(), plan.spread_rows}, spread.at(spread_header_bytes), plan.flags);
  build_columns({h.matrix_column.get(), plan.width}, plan.header.matrix);
  if (plan.header.extended) build_columns({h.pattern_column.get(), plan.width}, plan.header.pattern);
  for (u32 p = 0; p < plan.planes; ++p) {
    build_plane(plan, params, p, h);
    if (plan.header.extended) build_patterns(plan, params, p, h);
  }
  return true;
}

}  // namespace vrk
