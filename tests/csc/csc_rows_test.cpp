// Every row of both families, in runs of all lengths and with every sort of grid that it serves.
#include "csc/csc1_kernels.h"
#include "csc/csc2_kernels.h"
#include "tests/csc/csc_reference.h"
#include "tests/levels.h"

namespace {

using namespace vrk::test;

std::uint32_t flags_of(const vrk::csc_widths& widths) {
  return *std::ranges::find(csc_flags, widths,
                            [](std::uint32_t flags) { return vrk::csc_widths_of(vrk::csc_adjust_flags(flags)); });
}

// bounded: with axes that all rows serve.
vrk::kit::color_table table_for(unsigned channels, unsigned round, bool twelve, bool bounded) {
  if (round == 3 && !bounded) return random_table(channels, 4, 7, inner_axis, steep_axis, early_end);
  if (round == 2 && twelve) return random_table(channels, 2, 8, early_half, full_axis, early_half);
  return random_table(channels, round * 7 + 2, round, full_axis, full_axis, full_axis);
}

// With two stretches of one colour each, in which kernels need not convert each pixel. They meet where a block of
// pixels ends, so that no pixel of another colour lies between two blocks of one.
std::vector<rgb> pixels_for_rows(bool in16, unsigned round) {
  std::vector<rgb> pixels = varied_pixels(300, in16, round);
  pixels.insert(pixels.begin() + 70, 250, rgb(pixels[3]));
  pixels.insert(pixels.begin() + 320, 150, rgb(pixels[4]));
  return pixels;
}

// Has all runs of a handle converted by one row, whatever their length: conversion_for(row, round, flags) of it, with a
// mask in two of four rounds of the first converter.
template <class Handle, class Row>
void expect_rows_as_reference(std::span<const Row> rows, auto conversion_for) {
  for (const Row& row : rows) {
    const std::uint32_t flags = flags_of(row.widths);
    const auto expect_as_reference_at = [&](vrk::cpu_level level, unsigned round) {
      SCOPED_TRACE(testing::Message() << "row " << &row - rows.data() << ", level " << int(level) << ", round "
                                      << round);
      expect_as_reference(conversion_for(row, round, flags), pixels_for_rows(flags & VRK_IN16, round), (round + 1) % 4,
                          round > 1 && std::is_same_v<Handle, vrk::csc1_handle>, [&](void* handle) {
                            Handle& h = vrk::record_of<Handle>(handle);
                            h.row = h.short_run_row = vrk::u32(&row - rows.data());
                            h.level = level;
                            EXPECT_TRUE(h.grid.bounded || !row.bounded);
                          });
    };
    for (const vrk::cpu_level level : levels_of_this_machine()) {
      if (level != vrk::cpu_level::base && row.kernel[level] == row.kernel.base) continue;
      for (unsigned round = 0; round < 4; ++round) expect_as_reference_at(level, round);
    }
  }
}

TEST(csc1, rows) {
  const auto conversion_for = [](const vrk::csc1_row& row, unsigned round, std::uint32_t flags) {
    return row.rule == vrk::csc1_rule::grid ? by_grid(table_for(3, round, row.widths.work == 12, row.bounded), flags)
                                            : by_rule(fixed_rules[unsigned(row.rule) - 1], flags);
  };
  expect_rows_as_reference<vrk::csc1_handle>(vrk::csc1_rows(), conversion_for);
}

TEST(csc2, rows) {
  const auto conversion_for = [](const vrk::csc2_row& row, unsigned round, std::uint32_t flags) {
    return row.inks == 1 ? by_curve(flags)
                         : by_grid(table_for(row.inks, round, row.widths.work == 12, row.bounded), flags, row.gray);
  };
  expect_rows_as_reference<vrk::csc2_handle>(vrk::csc2_rows(), conversion_for);
}

}  // namespace
