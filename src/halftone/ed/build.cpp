#include "halftone/ed/build.h"

#include <algorithm>

#include "halftone/ed/kernels.h"

namespace vrk {

namespace {

// Tables are on the 10-bit scale; in 8-bit precision their values go down to its top bits.
u16 level_scale(u32 flags, u16 value) { return (flags & flag_prec10) != 0 ? value : u16(value >> 2 & 255); }
i8 modulation_scale(u32 flags, i8 value) { return (flags & flag_prec10) != 0 ? value : i8(value / 4); }

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

void build_spread(std::span<u32> words, const u8* rows, u32 flags) {
  const u32 scale = (flags & flag_prec10) != 0 ? 4 : 1;
  const auto entry = [&](u32 column) { return load_be16(rows + 2 * column) * scale & 0xFFFF; };
  for (std::size_t at = 0; at < words.size(); at += spread_row_words, rows += 2 * spread_columns) {
    words[at] = entry(0) << 16 | entry(1);
    words[at + 1] = entry(3) << 16 | entry(4);
    words[at + 2] = entry(2);
  }
}

void build_index(std::span<spread_index> index, u32 row_count, u32 flags) {
  const bool prec10 = (flags & flag_prec10) != 0;
  for (i32 i = 0; i < error_count; ++i) {
    const i32 error = std::clamp(first_error + i, -1024, 1023);
    const i32 row = std::clamp((prec10 ? error / 4 : error) + 255, 0, i32(row_count) - 1);
    const i32 carry2 = error % 2, carry4 = error % 4 - carry2;
    index[std::size_t(i)] = {u16(u32(row) * spread_row_words), i16(carry4 * 256 + carry2)};
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

}  // namespace

check ed_build(const ed_plan& plan, byte_view params, byte_view spread, carver& block) {
  ed_handle* const h = block.record<ed_handle>();
  if (h == nullptr) return check::unusable_argument;
  const ed_header& header = h->header = plan.header;
  const u32 planes = h->planes = plan.planes, flags = h->flags = plan.flags;
  const u64 width = h->width = plan.width;
  const u32 range = ed_value_range(flags), cells = header.matrix.cells();

  const auto index = block.take<spread_index>(error_count);
  const auto words = block.take<u32>(u64(spread_row_words) * plan.spread_rows);
  const auto errors = block.take<i16>(2 * planes * (width + 2 * guard_columns));
  std::array<std::span<u16>, plane_slots> level_values;
  for (u32 p = 0; p < planes; ++p) level_values[p] = block.take<u16>(header.level_count[table_slot[p]]);
  const auto modulation = block.take<i8>(planes * cells);
  const auto level_lut = block.take<u8>(planes * 3 * range);
  const auto level_line = block.take<u8>(planes * width);
  const auto matrix_column = block.take<u8>(width);
  if (!block.ok()) return check::unusable_argument;

  h->index = index.data();
  h->spread = words.data();
  h->error_line[0] = errors.data();
  h->error_line[1] = errors.data() + errors.size() / 2;
  h->modulation = modulation.data();
  h->level_lut = level_lut.data();
  h->level_line = level_line.data();
  h->matrix_column = matrix_column.data();

  build_index(index, plan.spread_rows, flags);
  build_spread(words, spread.at(spread_header_bytes), flags);
  std::fill(errors.begin(), errors.end(), i16{0});
  std::fill(level_line.begin(), level_line.end(), u8{0});
  build_columns(matrix_column, header.matrix);

  bool inside = true;
  for (u32 p = 0; p < planes; ++p) {
    const u32 slot = table_slot[p];
    h->level_values[p] = level_values[p].data();
    const u8* const values = params.at(plan.values_at[slot]);
    for (std::size_t level = 0; level < level_values[p].size(); ++level) {
      level_values[p][level] = level_scale(flags, load_be16(values + 2 * level));
    }
    const u8* const matrix = params.at(plan.matrix_at[slot]);
    for (u32 cell = 0; cell < cells; ++cell) {
      modulation[cell * planes + p] = modulation_scale(flags, i8(matrix[cell]));
    }
    const auto lut = level_lut.subspan(p * 3 * range, 3 * range);
    build_level_lut(lut, i32(range), header.level_count[slot], params.at(plan.thresholds_at[slot]), flags);
    inside = inside && errors_inside_index(lut.data(), level_values[p].data(), i32(range));
  }
  h->unchecked_values = inside ? 3 * range : 0;
  h->kernel = ed_kernel_row(flags, planes);
  h->same_scale = same_scale(header, planes);
  return check::ok;
}

}  // namespace vrk
