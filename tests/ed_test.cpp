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

// Block after block at random: side by side, over each other, ended or not, on the next line or anywhere.
void expect_defined_lines(const ed_tables& tables, unsigned flags, std::mt19937& random) {
  const unsigned width = 1 + unsigned(random() % 60);
  ed_reference reference(tables, width, flags);
  ed_library library(tables, width, flags, random() % 8 * 4);
  unsigned next_line = 0;
  for (int block = 0; block < 6; ++block) {
    const unsigned block_x = unsigned(random() % width), block_width = unsigned(random() % (width + 2));
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
        expect_defined_lines(random_ed_tables(traits, random), flags | more_flags, random);
      }
    }
  }
}

TEST(ed, lines_are_as_defined) { expect_defined_lines({}, VRK_K_CODE3); }
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
    for (void* const at : {static_cast<void*>(nullptr), static_cast<void*>(mem.data())}) {
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

TEST(ed, blocks_fit_the_line) {
  ed_library library(plain_tables(1, 2), 100, 0);
  EXPECT_TRUE(library.start(100, 0, 0) && library.start(40, 60, 0) && library.start(0, 100, 0));
  EXPECT_FALSE(library.start(41, 60, 0) || library.start(0xFFFFFFFF, 2, 0));
}

TEST(ed, white_paper_leaves_no_dot_and_no_error) {
  ed_tables tables = plain_tables(4, 2);
  for (auto& plane : tables.params.planes) std::ranges::fill(plane.modulation, i8{-128});
  for (const unsigned flags : all_widths) {
    ed_library library(tables, 50, flags);
    library.start(50, 0, 0);
    const std::vector<u8> before(library.bytes().begin(), library.bytes().end());
    for (int line = 0; line < 3; ++line) EXPECT_EQ(library.line(samples(200), false), output_lines(4, kit::bytes(7)));
    library.start(50, 0, 0);
    EXPECT_TRUE(std::ranges::equal(before, library.bytes()));
  }
}

// The first byte of a K line whose pixels all have this level, drawn on a thread of its own.
u8 codes_of_level(unsigned level, unsigned levels, unsigned bits, unsigned flags) {
  ed_tables tables{kit::ed_parameters(1, levels), kit::ed_distribution("none")};
  kit::ed_plane& k = tables.params.planes[3];
  k.bits = bits;
  for (unsigned i = 0; i + 1 < levels; ++i) k.thresholds[i] = i < level ? u16{0} : u16{1023};
  ed_library library(tables, 8, flags);
  library.start(8, 0, 0);
  u8 codes = 0;
  std::thread([&] { codes = library.line(samples(8, 1), false)[0][0]; }).join();
  return codes;
}

TEST(ed, three_levels_of_k_skip_a_code) {
  EXPECT_EQ(codes_of_level(1, 3, 2, VRK_K_CODE3), 0xAA);
  EXPECT_EQ(codes_of_level(2, 3, 2, VRK_K_CODE3), 0xFF);
  EXPECT_EQ(codes_of_level(1, 3, 2, 0), 0x55);
  EXPECT_EQ(codes_of_level(1, 2, 2, VRK_K_CODE3), 0x55);
  EXPECT_EQ(codes_of_level(2, 4, 2, VRK_K_CODE3), 0xAA);
}

TEST(ed, random_codes_start_with_41_and_18467_on_every_thread) {
  EXPECT_EQ(codes_of_level(1, 5, 4, VRK_RANDOM4), 0x57);
  EXPECT_EQ(codes_of_level(2, 5, 4, VRK_RANDOM4), 0x88);
  EXPECT_EQ(codes_of_level(1, 6, 4, VRK_RANDOM4), 0x77);
  EXPECT_EQ(codes_of_level(2, 6, 4, VRK_RANDOM4), 0x88);
  EXPECT_EQ(codes_of_level(3, 5, 4, VRK_RANDOM4), 0x33);
  EXPECT_EQ(codes_of_level(1, 7, 4, VRK_RANDOM4), 0x11);
  EXPECT_EQ(codes_of_level(1, 3, 2, VRK_RANDOM4), 0x55);
}

TEST(ed, random_codes_are_drawn_plane_by_plane) {
  std::thread([] {
    std::mt19937 random(4);
    ed_tables tables = plain_tables(6, 5);
    tables.params.planes[0] = kit::ed_parameters(1, 6).planes[3];
    ed_reference reference(tables, 41, VRK_RANDOM4);
    ed_library library(tables, 41, VRK_RANDOM4);
    reference.start(41, 0, 0), library.start(41, 0, 0);
    for (int line = 0; line < 20; ++line) {
      const samples values = random_samples(41 * 6, 0, random);
      ASSERT_EQ(library.line(values, line % 2), reference.line(values));
    }
  }).join();
}

TEST(ed, dots_of_a_cell) {
  const auto five_pixels = [](u16 cell, unsigned scale_x, unsigned scale_y) {
    ed_tables tables = plain_tables(1, 2);
    tables.params.version = "0020";
    kit::ed_plane& k = tables.params.planes[3];
    k.scale_x = scale_x, k.scale_y = scale_y, k.patterns = {{cell}, {0}};  // level 0 of K alone has dots
    ed_library library(tables, 5, 0);
    library.start(5, 0, 7);
    return library.line(samples(5), true);
  };
  EXPECT_EQ(five_pixels(0x8888, 1, 4), (output_lines{{0xF8}, {0xF8}, {0xF8}, {0xF8}}));
  EXPECT_EQ(five_pixels(0x8421, 1, 2), (output_lines{{0xF8}, {0x00}}));
  EXPECT_EQ(five_pixels(0x8421, 2, 2), (output_lines{{0xAA, 0x80}, {0x55, 0x40}}));
  EXPECT_EQ(five_pixels(0x8421, 4, 3), (output_lines{{0x88, 0x88, 0x80}, {0x44, 0x44, 0x40}, {0x22, 0x22, 0x20}}));
}

void expect_lines(ed_library& library, std::vector<u8> plane_bits, std::vector<u32> line_bytes, bool same_scale) {
  const vrk_ht_info& info = library.info;
  EXPECT_TRUE(std::ranges::equal(info.plane_bits, plane_bits) && std::ranges::equal(info.line_bytes, line_bytes));
  EXPECT_EQ(info.same_line_bytes, info.plane_count == 1);
  EXPECT_EQ(info.same_scale, same_scale);
  EXPECT_EQ(info.method, 1u);
  u8 bits[6];
  vrk_query_ed_bitlen(library.handle(), bits);
  EXPECT_TRUE(std::ranges::equal(bits, plane_bits));
}

TEST(ed, info_tells_the_lines_of_every_plane) {
  ed_tables tables = plain_tables(4, 2);
  tables.params.planes[3] = kit::ed_parameters(1, 4).planes[3];
  tables.params.planes[4].bits = 4;  // of a plane that is not in use
  ed_library mixed(tables, 4801, 0);
  expect_lines(mixed, {2, 1, 1, 1, 4, 1}, {1201, 601, 601, 601, 0, 0}, true);
  EXPECT_TRUE(mixed.info.plane_count == 4 && mixed.info.dot_expansion == 0);
  EXPECT_TRUE(mixed.info.plane_scale[3].scale_x == 1 && mixed.info.plane_scale[4].scale_x == 0);

  tables.params = kit::cell_parameters(4, 1, 1, 2);
  tables.params.planes[3] = kit::cell_parameters(1, 2, 2, 5).planes[3];
  ed_library dots(tables, 101, 0);
  expect_lines(dots, {1, 1, 1, 1, 0, 0}, {26, 13, 13, 13, 0, 0}, false);
  EXPECT_TRUE(dots.info.plane_count == 4 && dots.info.dot_expansion == 1);
  EXPECT_TRUE(dots.info.plane_scale[0].scale_y == 2 && dots.info.plane_scale[3].scale_y == 1);
  EXPECT_EQ(vrk_exec_ed(dots.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0u);

  tables.params.planes[0] = {};
  ed_library k_alone(tables, 101, 0);
  EXPECT_EQ(k_alone.info.plane_count, 1);
  expect_lines(k_alone, {1, 0, 1, 1, 0, 0}, {26, 0, 13, 13, 0, 0}, true);
}

}  // namespace
