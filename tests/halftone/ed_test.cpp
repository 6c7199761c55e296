#include <thread>

#include "kit/presets.h"
#include "tests/fenced_handle.h"
#include "tests/halftone/ed_job.h"

namespace {

using namespace vrk;
using namespace vrk::test;

constexpr unsigned all_widths[] = {0, VRK_PREC10, VRK_IN16};

ed_tables plain_tables(unsigned planes, unsigned levels) {
  return {kit::ed_parameters(planes, levels), kit::ed_distribution("fan")};
}

// Block after block at random: side by side, over each other, beyond the line, ended or not, on the next line or
// anywhere.
void expect_defined_lines(const ed_tables& tables, unsigned flags, std::mt19937& random) {
  const unsigned width = 1 + unsigned(random() % 60);
  ed_reference reference(tables, width, flags);
  ed_library library(tables, width, flags, random() % 8 * 4);
  unsigned next_line = 0;
  for (int block = 0; block < 6; ++block) {
    const unsigned block_x = unsigned(random() % (width + 1));
    const unsigned block_width = random() % 8 == 0 ? 0xFFFFFFFF : unsigned(random() % (width + 2));
    const unsigned first = random() % 3 == 0 ? unsigned(random()) : next_line;
    const bool fits = library.start(block_width, block_x, first);
    ASSERT_EQ(fits, reference.start(block_width, block_x, first));
    if (!fits) continue;
    next_line = first;
    for (std::size_t lines = random() % 5; lines != 0; --lines, ++next_line) {
      const auto values = random_samples(block_width * reference.planes(), flags, random);
      const bool through_array = tables.params.extended() || random() % 2;
      ASSERT_EQ(library.line(values, through_array), reference.line(values)) << "width " << width << " flags " << flags;
    }
    if (random() % 2) library.end(), reference.end();
    if (random() % 8 == 0) library.clear(), reference.clear();
  }
}

void expect_defined_lines(ed_traits traits, unsigned more_flags) {
  std::mt19937 random(traits.wild + 2 * traits.extended);
  for (const unsigned flags : all_widths) {
    for (const std::size_t planes : {1, 4, 6}) {
      for (int job = 0; job < 30 && !testing::Test::HasFatalFailure(); ++job) {
        traits.planes = planes;
        traits.same_scale = job % 2;
        const ed_tables tables = random_ed_tables(traits, random);
        // On a thread of its own, where random codes begin anew.
        std::thread([&] { expect_defined_lines(tables, flags | more_flags, random); }).join();
      }
    }
  }
}

TEST(ed, lines_are_as_defined) { expect_defined_lines({}, 0); }
TEST(ed, codes_are_as_defined) { expect_defined_lines({.few_levels = true}, VRK_K_CODE3 | VRK_RANDOM4); }
TEST(ed, values_outside_every_table_clamp) { expect_defined_lines({.wild = true}, 0); }
TEST(ed, dot_cells_are_as_defined) { expect_defined_lines({.extended = true}, VRK_K_CODE3 | VRK_RANDOM4); }

TEST(ed, size_follows_the_rule) {
  ed_tables tables = plain_tables(1, 2);
  tables.params.matrix_width = tables.params.matrix_height = 16;
  tables.params.planes[3].modulation.resize(256);
  EXPECT_EQ(ed_library::create(tables, 4800, 0, nullptr), 49763u);
  EXPECT_EQ(ed_library::create(tables, 4800, VRK_PREC10, nullptr), 49763u + 3 * 768);
  EXPECT_EQ(ed_library::create(tables, 0xFFFFFFFF, 0, nullptr), 0u) << "beyond 32 bits";
  tables.params.version = "0020";
  tables.params.planes[3].patterns = {{1}, {2}};
  EXPECT_EQ(ed_library::create(tables, 4800, 0, nullptr), 49763u + 4800 + 2 * 2 * (1 + 2) + 2 * 4800);
}

TEST(ed, any_address_gives_the_same_handle) {
  std::mt19937 random(1);
  for (const bool extended : {false, true}) {
    const ed_tables tables = random_ed_tables({.planes = 6, .extended = extended}, random);
    const ed_library first(tables, 33, VRK_IN16);
    for (std::size_t offset = 4; offset < 32; offset += 4) {
      EXPECT_TRUE(std::ranges::equal(first.bytes(), ed_library(tables, 33, VRK_IN16, offset).bytes())) << offset;
    }
  }
}

TEST(ed, flags_are_kept_with_the_precision_that_16_bit_samples_bring) {
  for (const unsigned flags : {0x0u, 0x10u, 0x1u, 0x181u, 0x8000u}) {
    ed_library library(plain_tables(1, 2), 8, flags);
    EXPECT_EQ(vrk_query_ed_hint(library.handle()), (flags & 1) != 0 ? flags | 0x10 : flags);
  }
}

void expect_info(const ed_tables& tables, const vrk_ht_info& expected) {
  ed_library library(tables, 101, 0);
  u8 bits[6];
  vrk_query_ed_bitlen(library.handle(), bits);
  test::expect_info(library.info, bits, expected);
}

TEST(ed, info_tells_the_lines_of_every_plane) {
  ed_tables tables = plain_tables(4, 2);
  tables.params.planes[3] = kit::ed_parameters(1, 4).planes[3];
  tables.params.planes[4].bits = 4;  // of a plane that is not in use
  expect_info(tables, {.method = 1,
                       .plane_count = 4,
                       .plane_bits = {2, 1, 1, 1, 4, 1},
                       .line_bytes = {26, 13, 13, 13, 0, 0},
                       .same_line_bytes = 0,
                       .dot_expansion = 0,
                       .plane_scale = {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {0, 0}, {0, 0}},
                       .same_scale = 1});

  tables.params = kit::cell_parameters(4, 1, 1, 2);
  tables.params.planes[3] = kit::cell_parameters(1, 2, 3, 5).planes[3];
  vrk_ht_info cells{.method = 1,
                    .plane_count = 4,
                    .plane_bits = {1, 1, 1, 1, 0, 0},
                    .line_bytes = {26, 13, 13, 13, 0, 0},
                    .same_line_bytes = 0,
                    .dot_expansion = 1,
                    .plane_scale = {{2, 3}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}},
                    .same_scale = 0};
  expect_info(tables, cells);

  tables.params.planes[0] = {};
  cells.same_line_bytes = cells.same_scale = cells.plane_count = 1;
  cells.plane_bits[1] = 0;
  cells.line_bytes[1] = 0;
  expect_info(tables, cells);
}

TEST(ed, dot_cells_have_more_lines_than_six_arguments_could_take) {
  ed_library library({kit::cell_parameters(1, 2, 2, 5), kit::ed_distribution("fan")}, 8, 0);
  EXPECT_EQ(vrk_exec_ed(library.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0u);
}

}  // namespace
