#include <functional>
#include <thread>

#include "kit/presets.h"
#include "tests/ed_job.h"

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
    fenced_block odd(first.bytes().size(), 2);
    EXPECT_EQ(ed_library::create(tables, 33, VRK_IN16, odd.data()), 0u);
    EXPECT_TRUE(odd.untouched());
  }
}

TEST(ed, flags_are_kept_with_the_precision_that_16_bit_samples_bring) {
  for (const unsigned flags : {0x0u, 0x10u, 0x1u, 0x181u, 0x8000u}) {
    ed_library library(plain_tables(1, 2), 8, flags);
    EXPECT_EQ(vrk_query_ed_hint(library.handle()), (flags & 1) != 0 ? flags | 0x10 : flags);
  }
}

struct refusal {
  const char* what;
  std::function<void(kit::edpr_table&, kit::edtb_table&)> spoil;
};

void expect_refused(ed_tables tables, const refusal& refusal) {
  fenced_block mem(ed_library::create(tables, 20, 0, nullptr));
  refusal.spoil(tables.params, tables.spread);
  EXPECT_EQ(ed_library::create(tables, 20, 0, nullptr), 0u) << refusal.what;
  EXPECT_EQ(ed_library::create(tables, 20, 0, mem.data()), 0u) << refusal.what;
  EXPECT_TRUE(mem.untouched()) << refusal.what;
}

TEST(ed, tables_that_do_not_hold_together_are_refused_by_both_calls) {
  const refusal of_either_form[] = {
      {"parameter magic", [](auto& p, auto&) { p.magic = "edtb"; }},
      {"distribution magic", [](auto&, auto& s) { s.magic = "edpr"; }},
      {"distribution version", [](auto&, auto& s) { s.version = "0011"; }},
      {"columns", [](auto&, auto& s) { s.column_count = 5; }},
      {"no rows", [](auto&, auto& s) { s.row_count = 0; }},
      {"matrix width", [](auto& p, auto&) { p.matrix_width = 0; }},
      {"matrix height", [](auto& p, auto&) { p.matrix_height = 0; }},
      {"no K", [](auto& p, auto&) { p.planes[3] = {}; }},
      {"six planes without M", [](auto& p, auto&) { p.planes[4] = p.planes[5] = p.planes[0], p.planes[1] = {}; }},
  };
  const refusal of_extended_form[] = {
      {"scale_x", [](auto& p, auto&) { p.planes[2].scale_x = 3; }},
      {"scale_y 0", [](auto& p, auto&) { p.planes[2].scale_y = 0; }},
      {"scale_y 5", [](auto& p, auto&) { p.planes[2].scale_y = 5; }},
      {"pattern width", [](auto& p, auto&) { p.pattern_width = 0; }},
      {"pattern height", [](auto& p, auto&) { p.pattern_height = 0; }},
  };
  std::mt19937 random(2);
  const ed_tables packed = random_ed_tables({}, random), dots = random_ed_tables({.extended = true}, random);
  for (const refusal& refusal : of_either_form) expect_refused(packed, refusal), expect_refused(dots, refusal);
  for (const refusal& refusal : of_extended_form) expect_refused(dots, refusal);
  for (const unsigned bits : {1u, 2u, 4u}) {
    expect_refused(plain_tables(4, 2), {"more levels than codes", [=](auto& p, auto&) {
                                          kit::ed_plane& sixth = p.planes[5] = p.planes[0];  // used, not produced
                                          sixth.bits = bits;
                                          sixth.level_values.resize((1u << bits) + 1);
                                          sixth.thresholds.resize(1u << bits);
                                        }});
  }
}

TEST(ed, every_prefix_of_a_table_is_refused) {
  std::mt19937 random(3);
  for (const bool extended : {false, true}) {
    ed_tables tables = random_ed_tables({.planes = 6, .extended = extended}, random);
    tables.spread.rows.resize(9);
    const kit::bytes spread = tables.spread.encode(), params = tables.params.encode();
    std::vector<u32> mem(ed_library::create(tables, 9, 0, nullptr));
    for (u32* const at : {static_cast<u32*>(nullptr), mem.data()}) {
      const auto create = [&](std::size_t spread_size, std::size_t params_size) {
        guarded_copy s{std::span(spread).first(spread_size)}, p{std::span(params).first(params_size)};
        return vrk_create_ed(9, s.size(), s.data(), p.size(), p.data(), 0, at);
      };
      for (std::size_t n = 0; n < spread.size(); ++n) EXPECT_EQ(create(n, params.size()), 0u);
      for (std::size_t n = 0; n < params.size(); ++n) EXPECT_EQ(create(spread.size(), n), 0u);
      EXPECT_NE(create(spread.size(), params.size()), 0u);
      EXPECT_EQ(vrk_create_ed(9, 99, nullptr, u32(params.size()), params.data(), 0, at), 0u);
      EXPECT_EQ(vrk_create_ed(9, u32(spread.size()), spread.data(), 99, nullptr, 0, at), 0u);
    }
  }
}

struct expected_lines {
  unsigned planes;
  std::vector<u8> bits;
  std::vector<u32> line_bytes;
  bool same_line_bytes, same_scale, dots;
};

void expect_info(const ed_tables& tables, const expected_lines& expected) {
  ed_library library(tables, 101, 0);
  const vrk_ht_info& info = library.info;
  EXPECT_EQ(info.method, 1u);
  EXPECT_EQ(info.plane_count, expected.planes);
  EXPECT_TRUE(std::ranges::equal(info.plane_bits, expected.bits));
  EXPECT_TRUE(std::ranges::equal(info.line_bytes, expected.line_bytes));
  EXPECT_EQ(info.same_line_bytes, expected.same_line_bytes);
  EXPECT_EQ(info.same_scale, expected.same_scale);
  EXPECT_EQ(info.dot_expansion, expected.dots);
  EXPECT_EQ(info.plane_scale[0].scale_y, expected.dots ? 2 : 1);
  EXPECT_EQ(info.plane_scale[3].scale_y, 1);
  EXPECT_EQ(info.plane_scale[4].scale_x, expected.dots ? 1 : 0);  // extended: what the table says
  u8 bits[6];
  vrk_query_ed_bitlen(library.handle(), bits);
  EXPECT_TRUE(std::ranges::equal(bits, expected.bits));
  if (expected.dots) {
    EXPECT_EQ(vrk_exec_ed(library.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0u);
  }
}

TEST(ed, info_tells_the_lines_of_every_plane) {
  ed_tables tables = plain_tables(4, 2);
  tables.params.planes[3] = kit::ed_parameters(1, 4).planes[3];
  tables.params.planes[4].bits = 4;  // of a plane that is not in use
  expect_info(tables, {4, {2, 1, 1, 1, 4, 1}, {26, 13, 13, 13, 0, 0}, false, true, false});

  tables.params = kit::cell_parameters(4, 1, 1, 2);
  tables.params.planes[3] = kit::cell_parameters(1, 2, 2, 5).planes[3];
  expect_info(tables, {4, {1, 1, 1, 1, 0, 0}, {26, 13, 13, 13, 0, 0}, false, false, true});

  tables.params.planes[0] = {};
  expect_info(tables, {1, {1, 0, 1, 1, 0, 0}, {26, 0, 13, 13, 0, 0}, true, true, true});
}

}  // namespace
