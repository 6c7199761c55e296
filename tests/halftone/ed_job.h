// Error diffusion jobs for the tests: tables at random, and the library driven line by line between guard bytes.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "tests/halftone/ed_reference.h"
#include "tests/halftone/halftone_lines.h"

namespace vrk::test {

// What random tables are like. Few levels: such as have codes of their own. Wild: values, thresholds, amounts and row
// counts that lead outside every table. Two levels: all that kernels for these ask of tables; wild then only sends so
// much to the next line that errors lie anywhere. Large: a modulation matrix and shifts as large as a byte tells.
struct ed_traits {
  std::size_t planes = 4;  // 0 (no K), 1, 4 or 6; often there is one more in use, which is not produced
  bool few_levels = false, wild = false, two_levels = false, extended = false, same_scale = false, large = false;
};

inline ed_tables random_ed_tables(const ed_traits& traits, std::mt19937& random) {
  const auto below = [&](unsigned n) { return unsigned(random() % n); };
  const auto fill = [&](auto& list, std::size_t count, unsigned n) {
    list.resize(count);
    for (auto& value : list) value = std::remove_reference_t<decltype(value)>(below(n));
  };
  ed_tables tables;
  kit::edpr_table& t = tables.params;
  t.version = traits.extended ? "0020" : "0010";
  for (unsigned* size : {&t.matrix_width, &t.matrix_height, &t.pattern_width, &t.pattern_height}) *size = 1 + below(5);
  for (unsigned* shift : {&t.matrix_column_shift, &t.matrix_row_shift}) *shift = below(7);
  for (unsigned* shift : {&t.pattern_column_shift, &t.pattern_row_shift}) *shift = below(7);
  if (traits.large) {
    t.matrix_width = 255 - 127 * below(2), t.matrix_height = 255 - 127 * below(2);
    t.matrix_column_shift = t.matrix_row_shift = 255 - 55 * below(2);
  }
  const unsigned same_x = 1u << below(3), same_y = 1 + below(4);
  const std::size_t one_more = std::max(traits.planes, std::size_t{1}) + below(6);
  for (std::size_t p = 0; p < 6; ++p) {
    if (p >= traits.planes && p != one_more) continue;
    kit::ed_plane& plane = t.planes[kit::table_position[p]];
    plane.bits = std::vector{1u, 2u, 4u, 3u}[below(traits.few_levels ? 3 : 4)];
    const unsigned top = traits.wild ? 65536 : 1024, most = below(4) == 0 ? 255 : 1u << plane.bits;
    const unsigned levels = traits.few_levels ? 2 + below(6) : 1 + below(most);
    fill(plane.level_values, levels, top);
    fill(plane.thresholds, levels - 1, top);
    if (!traits.wild) std::ranges::sort(plane.level_values), std::ranges::sort(plane.thresholds);
    fill(plane.modulation, t.matrix_width * t.matrix_height, 256);
    plane.scale_x = traits.same_scale ? same_x : 1u << below(3);
    plane.scale_y = traits.same_scale ? same_y : 1 + below(4);
    plane.patterns.resize(levels);
    for (auto& cells : plane.patterns) fill(cells, t.pattern_width * t.pattern_height, 65536);
  }
  tables.distribution.rows.resize(traits.wild ? 1 + below(1400) : 511);
  for (std::size_t row = 0; row < tables.distribution.rows.size(); ++row) {
    kit::edtb_row& amounts = tables.distribution.rows[row];
    for (i16& amount : amounts) amount = i16(below(65536));
    if (traits.wild) continue;
    int rest = int(row) - 255;
    for (std::size_t i = 0; i < 4; ++i) rest -= amounts[i] = i16(rest * int(below(100)) / 100);
    amounts[4] = i16(rest);
  }
  if (!traits.two_levels) return tables;
  for (kit::ed_plane& plane : t.planes) {
    if (plane.level_values.empty()) continue;
    plane.level_values = {0, u16(700 + below(324))}, plane.thresholds = {u16(132 + below(760))};
    plane.patterns.resize(2, std::vector<u16>(t.pattern_width * t.pattern_height));
  }
  const int most_below = traits.wild ? 1300 : 20 + 40 * int(below(2));
  const int most[] = {100, 60, most_below, most_below, most_below, 32767, 32767};
  tables.distribution.rows.resize(511);
  for (kit::edtb_row& row : tables.distribution.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = i16(int(below(unsigned(2 * most[i] + 1))) - most[i]);
  }
  tables.distribution.rows[255] = {};
  return tables;
}

inline samples random_samples(std::size_t count, unsigned flags, std::mt19937& random) {
  samples values(count);
  for (u16& s : values) s = u16(random() % 3 == 0 ? 0 : random() % ((flags & VRK_IN16) ? 65536 : 256));
  return values;
}

// A handle of the library; it takes samples from odd addresses where it lies an odd multiple of 4 past a boundary.
class ed_library : public handle {
 public:
  ed_library(const ed_tables& tables, unsigned width, unsigned flags, std::size_t offset = 0)
      : handle([&](void* mem) { return create(tables, width, flags, mem); }, offset),
        flags_(flags),
        src_offset_(offset / 4 % 2) {}

  static u32 create(const ed_tables& tables, unsigned width, unsigned flags, void* mem) {
    const kit::bytes distribution = tables.distribution.encode(), params = tables.params.encode();
    return vrk_create_ed(width, u32(distribution.size()), distribution.data(), u32(params.size()), params.data(), flags,
                         mem);
  }
  bool start(unsigned block_width, unsigned x, unsigned line) {
    return vrk_start_ed_block(get(), block_width, x, line) == 1;
  }

  // Through vrk_exec_edx, or through the six arguments of vrk_exec_ed, null for planes that are not produced.
  void expect_line(ed_reference& reference, const samples& values, bool through_array) {
    std::vector<u8> src = packed(values, (flags_ & VRK_IN16) != 0);
    src.insert(src.begin(), src_offset_, 0);
    guarded_copy page(src);
    const lines expected = reference.line(values);
    ASSERT_EQ(fenced_lines(*this, page.data() + src_offset_, expected, through_array, vrk_exec_ed, vrk_exec_edx),
              expected);
  }

 private:
  unsigned flags_;
  std::size_t src_offset_;
};

}  // namespace vrk::test
