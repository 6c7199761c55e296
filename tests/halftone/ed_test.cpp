#include <thread>

#include "kit/presets.h"
#include "tests/halftone/ed_job.h"

namespace {

using namespace vrk;
using namespace vrk::test;

constexpr unsigned all_widths[] = {0, VRK_PREC10, VRK_IN16};

ed_tables plain_tables(unsigned planes, unsigned levels) {
  return {kit::ed_parameters(planes, levels), kit::ed_distribution("fan")};
}

// Block after block at random: side by side, over each other, beyond the line, ended or not, on the next line or
// anywhere. Queries in between, and calls that are refused, change nothing; no handle needs a query.
void expect_defined_lines(const ed_tables& tables, unsigned width, unsigned flags, std::size_t offset,
                          std::mt19937& random) {
  ed_reference reference(tables, width, flags);
  ed_library library(tables, width, flags, offset);
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
      vrk_ht_info info;
      if (random() % 8 == 0) vrk_query_ed_info(library.get(), &info);
      const bool cells = tables.params.extended();
      if (cells) {
        EXPECT_EQ(vrk_exec_ed(library.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0u);
      }
      const auto values = random_samples(block_width * reference.planes(), flags, random);
      SCOPED_TRACE(testing::Message() << "width " << width << " flags " << flags);
      library.expect_line(reference, values, cells || random() % 2);
      if (testing::Test::HasFatalFailure()) return;
    }
    if (random() % 2) vrk_end_ed_block(library.get()), reference.end();
    if (random() % 8 == 0) vrk_clear_ed_buf(library.get()), reference.clear();
  }
}

void expect_defined_lines(ed_traits traits, unsigned more_flags) {
  std::mt19937 random(traits.wild + 2 * traits.extended);
  std::size_t jobs = 0;
  for (const unsigned flags : all_widths) {
    for (const std::size_t planes : {0, 1, 4, 6}) {
      for (int job = 0; job < (traits.large ? 2 : 30) && !testing::Test::HasFatalFailure(); ++job) {
        traits.planes = planes;
        traits.same_scale = job % 2;
        const ed_tables tables = random_ed_tables(traits, random);
        const unsigned width = traits.large ? 3000 : 1 + unsigned(random() % 60);
        // On a thread of its own, where random codes begin anew.
        std::thread([&] { expect_defined_lines(tables, width, flags | more_flags, jobs++ % 32, random); }).join();
      }
    }
  }
}

TEST(ed, lines_are_as_defined) { expect_defined_lines({}, 0); }
TEST(ed, codes_are_as_defined) { expect_defined_lines({.few_levels = true}, VRK_K_CODE3 | VRK_RANDOM4); }
TEST(ed, values_outside_every_table_clamp) { expect_defined_lines({.wild = true}, 0); }
TEST(ed, lines_of_two_levels_are_as_defined) { expect_defined_lines({.two_levels = true}, 0); }
TEST(ed, dot_cells_of_two_levels_are_as_defined) { expect_defined_lines({.two_levels = true, .extended = true}, 0); }
TEST(ed, errors_anywhere_lead_to_the_end_rows_of_two_levels) {
  expect_defined_lines({.wild = true, .two_levels = true}, 0);
}
TEST(ed, large_matrices_are_laid_as_defined) { expect_defined_lines({.large = true}, 0); }
TEST(ed, dot_cells_are_as_defined) { expect_defined_lines({.extended = true}, VRK_K_CODE3 | VRK_RANDOM4); }

TEST(ed, handles_of_one_thread_draw_from_one_sequence) {
  std::thread([] {
    std::mt19937 random(1);
    const ed_tables five = plain_tables(1, 5), six = plain_tables(1, 6);
    ed_reference references[] = {{five, 50, VRK_RANDOM4}, {six, 50, VRK_RANDOM4}};
    ed_library libraries[] = {{five, 50, VRK_RANDOM4}, {six, 50, VRK_RANDOM4}};
    for (unsigned turn = 0; turn < 8; ++turn) {
      references[turn % 2].start(50, 0, turn), libraries[turn % 2].start(50, 0, turn);
      libraries[turn % 2].expect_line(references[turn % 2], random_samples(50, 0, random), false);
    }
  }).join();
}

// Quantisation errors of -1536 ... 1535 need no range check. Level values whose furthest error is just inside or just
// outside, and a line that reaches it: the pixel after it tells which row it took.
TEST(ed, furthest_quantisation_errors_take_the_end_rows) {
  for (const int beyond : {0, 1}) {
    struct {
      std::vector<u16> level_values;
      i8 modulation;
      i16 amount;  // for the next pixel
      std::size_t end_row;
      i16 end_amount;
      samples values;  // on the 10-bit scale
    } const cases[] = {
        {{u16(384 + beyond), 1023}, -128, -288, 0, 200, {u16(380 + beyond), 0, 0}},
        {{0, u16(639 - beyond)}, 127, 288, 510, -200, {u16(643 - beyond), 1022, 0}},
    };
    for (const auto& c : cases) {
      ed_tables tables = plain_tables(1, 2);
      tables.params.planes[3].level_values = c.level_values;
      tables.params.planes[3].modulation = {c.modulation};
      tables.distribution.rows.assign(511, {c.amount});
      tables.distribution.rows[c.end_row] = {c.end_amount};
      samples values = c.values;
      for (u16& value : values) value = u16(value << 6);
      ed_reference reference(tables, 3, VRK_IN16);
      ed_library library(tables, 3, VRK_IN16);
      reference.start(3, 0, 300), library.start(3, 0, 300);
      SCOPED_TRACE(testing::Message() << c.end_row << " beyond by " << beyond);
      library.expect_line(reference, values, false);
    }
  }
}

TEST(ed, size_follows_the_rule) {
  ed_tables tables = plain_tables(1, 2);
  const auto size = [&](unsigned width, unsigned flags, unsigned matrix_width, unsigned matrix_height) {
    kit::edpr_table& t = tables.params;
    t.matrix_width = matrix_width, t.matrix_height = matrix_height;
    for (auto& plane : t.planes) plane.modulation.resize(plane.level_values.empty() ? 0 : matrix_width * matrix_height);
    return ed_library::create(tables, width, flags, nullptr);
  };
  EXPECT_EQ(size(4800, 0, 16, 16), 49763u);
  EXPECT_EQ(size(4800, VRK_PREC10, 16, 16), 49763u + 3 * 768);
  EXPECT_EQ(size(715824431, 0, 2, 1), 0xFFFFFFFF);
  EXPECT_EQ(size(715824431, 0, 3, 1), 0u) << "beyond 32 bits";
  EXPECT_EQ(size(0xFFFFFFFF, 0, 1, 1), 0u);
  std::swap(tables.params.planes[0], tables.params.planes[3]);
  EXPECT_EQ(size(4800, 0, 16, 16), 49763u) << "a plane in use counts, produced or not";
  tables.params.version = "0020";
  tables.params.planes[0].patterns = {{1}, {2}};
  EXPECT_EQ(size(4800, 0, 16, 16), 49763u + 4800 + 2 * 2 * (1 + 2) + 2 * 4800);
  tables.params.planes[0] = {};
  EXPECT_EQ(size(4800, 0, 16, 16), 12739u + 14 * 511 + 2 * 4800);
  ed_library(tables, 4800, 0);  // is large enough to build in
}

TEST(ed, handles_of_one_alignment_are_the_same) {
  std::mt19937 random(1);
  for (const bool of_one_kind : {false, true}) {
    const ed_tables tables =
        random_ed_tables({.planes = 6, .two_levels = of_one_kind, .extended = of_one_kind}, random);
    const ed_library first(tables, 33, VRK_IN16);
    for (std::size_t offset = 4; offset < 32; offset += 4) {
      EXPECT_TRUE(std::ranges::equal(first.bytes(), ed_library(tables, 33, VRK_IN16, offset).bytes())) << offset;
    }
  }
}

TEST(ed, flags_are_kept_with_the_precision_that_16_bit_samples_bring) {
  for (const unsigned flags : {0x0u, 0x10u, 0x1u, 0x181u, 0x8000u}) {
    ed_library library(plain_tables(1, 2), 8, flags);
    EXPECT_EQ(vrk_query_ed_hint(library.get()), (flags & 1) != 0 ? flags | 0x10 : flags);
  }
}

void expect_info(const ed_tables& tables, const vrk_ht_info& expected) {
  ed_library library(tables, 101, 0);
  u8 bits[6];
  vrk_query_ed_bitlen(library.get(), bits);
  vrk_ht_info info{};
  EXPECT_EQ(vrk_query_ed_info(library.get(), &info), 1u);
  test::expect_info(info, bits, expected);
}

// Method, planes, their bits, bytes of their lines, whether these are the same, dot cells, scales, the same for all.
TEST(ed, info_tells_the_lines_of_every_plane) {
  ed_tables tables = plain_tables(4, 2);
  tables.params.planes[3] = kit::ed_parameters(1, 4).planes[3];
  tables.params.planes[4].bits = 4;  // of a plane that is not in use
  expect_info(tables, {1, 4, {2, 1, 1, 1, 4, 1}, {26, 13, 13, 13}, 0, 0, {{1, 1}, {1, 1}, {1, 1}, {1, 1}}, 1});

  tables.params = kit::cell_parameters(4, 1, 1, 2);
  tables.params.planes[3] = kit::cell_parameters(1, 2, 3, 5).planes[3];
  const vrk_plane_scale one{1, 1};
  expect_info(tables, {1, 4, {1, 1, 1, 1}, {26, 13, 13, 13}, 0, 1, {{2, 3}, one, one, one, one, one}, 0});

  tables.params.planes[0] = {};
  expect_info(tables, {1, 1, {1, 0, 1, 1}, {26, 0, 13, 13}, 1, 1, {{2, 3}, one, one, one, one, one}, 1});

  tables.params = kit::ed_parameters(1, 2);
  tables.params.planes[3] = {};
  expect_info(tables, {1, 1, {1, 1, 1, 1, 1, 1}, {}, 1, 0, {}, 1});
}

}  // namespace
