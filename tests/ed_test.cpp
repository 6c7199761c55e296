#include "tests/ed_job.h"

#include <functional>
#include <thread>

#include "kit/presets.h"

namespace {

using namespace vrk;
using namespace vrk::test;

constexpr unsigned all_widths[] = {0, VRK_PREC10, VRK_IN16};

ed_tables plain_tables(unsigned planes, unsigned levels) {
  return {kit::ed_parameters(planes, levels), kit::ed_distribution("fan")};
}

// Block after block at random: next to each other, over each other, ended or not, on the next line or anywhere.
void expect_defined_lines(const ed_tables& tables, unsigned flags, std::mt19937& random) {
  const unsigned width = 1 + unsigned(random() % 60);
  ed_reference reference(tables.params, tables.spread, width, flags);
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
      const auto samples = random_samples(block_width * reference.planes, flags, random);
      const bool through_array = tables.params.extended() || random() % 2;
      ASSERT_EQ(library.line(samples, through_array), reference.line(samples))
          << "width " << width << " flags " << flags;
    }
    if (random() % 2) library.end(), reference.end();
    if (random() % 8 == 0) library.clear(), reference.clear();
  }
}

void expect_defined_lines(ed_traits traits, unsigned more_flags, unsigned jobs) {
  std::mt19937 random(traits.wild + 2 * traits.extended);
  for (const unsigned flags : all_widths) {
    for (traits.planes = 1; traits.planes <= 6; traits.planes += traits.planes == 1 ? 3 : 2) {
      for (unsigned job = 0; job < jobs && !testing::Test::HasFatalFailure(); ++job) {
        traits.same_scale = job % 2;
        expect_defined_lines(random_ed_tables(traits, random), flags | more_flags, random);
      }
    }
  }
}

TEST(ed, lines_are_as_defined) { expect_defined_lines({}, VRK_K_CODE3, 30); }
TEST(ed, values_outside_every_table_clamp) { expect_defined_lines({.wild = true}, 0, 30); }
TEST(ed, dot_cells_are_as_defined) { expect_defined_lines({.extended = true}, VRK_K_CODE3 | VRK_RANDOM4, 30); }

TEST(ed, size_is_that_of_the_record_rule) {
  ed_tables tables = plain_tables(1, 2);
  tables.params.matrix_width = tables.params.matrix_height = 16;
  tables.params.planes[3].modulation.resize(256);
  EXPECT_EQ(ed_library::create(tables, 4800, 0, nullptr), 49763u);
  EXPECT_EQ(ed_library::create(tables, 4800, VRK_PREC10, nullptr), 49763u + 3 * 768);
  EXPECT_EQ(ed_library::create(tables, 0xFFFFFFFF, 0, nullptr), 0u) << "beyond 32 bits";
  ed_tables dots = plain_tables(1, 2);
  dots.params.version = "0020";
  dots.params.planes[3].patterns = {{1}, {2}};
  EXPECT_EQ(ed_library::create(dots, 100, 0, nullptr),
            ed_library::create(plain_tables(1, 2), 100, 0, nullptr) + 100 + 2 * 2 * 3 + 2 * 100);
}

TEST(ed, any_address_gives_the_same_handle) {
  std::mt19937 random(1);
  for (const bool extended : {false, true}) {
    const ed_tables tables = random_ed_tables({.planes = 6, .extended = extended}, random);
    ed_library first(tables, 33, VRK_IN16);
    for (std::size_t offset = 4; offset < 32; offset += 4) {
      const ed_library other(tables, 33, VRK_IN16, offset);
      EXPECT_TRUE(std::ranges::equal(first.bytes(), other.bytes())) << offset;
    }
    fenced_block odd(first.bytes().size(), 2);
    EXPECT_EQ(ed_library::create(tables, 33, VRK_IN16, odd.data()), 0u);
    EXPECT_TRUE(odd.untouched());
  }
}

TEST(ed, flags_are_kept_with_the_precision_that_16_bit_samples_bring) {
  for (const auto& [given, kept] :
       {std::pair{0u, 0u}, {0x1u, 0x11u}, {0x10u, 0x10u}, {0x181u, 0x191u}, {0x8000u, 0x8000u}}) {
    ed_library library(plain_tables(1, 2), 8, given);
    EXPECT_EQ(vrk_query_ed_hint(library.handle()), kept);
  }
}

struct refusal {
  const char* what;
  std::function<void(ed_tables&)> spoil;
};

TEST(ed, tables_that_do_not_hold_together_are_refused_by_both_calls) {
  std::mt19937 random(2);
  const ed_tables packed = random_ed_tables({.planes = 4}, random);
  const ed_tables dots = random_ed_tables({.planes = 4, .extended = true}, random);
  const refusal either[] = {
      {"parameter magic", [](ed_tables& t) { t.params.magic = "edtb"; }},
      {"distribution magic", [](ed_tables& t) { t.spread.magic = "edpr"; }},
      {"distribution version", [](ed_tables& t) { t.spread.version = "0011"; }},
      {"columns", [](ed_tables& t) { t.spread.column_count = 5; }},
      {"no rows", [](ed_tables& t) { t.spread.row_count = 0; }},
      {"more rows than there are", [](ed_tables& t) { t.spread.row_count = 512; }},
      {"matrix width", [](ed_tables& t) { t.params.matrix_width = 0; }},
      {"matrix height", [](ed_tables& t) { t.params.matrix_height = 0; }},
      {"no K", [](ed_tables& t) { t.params.planes[3] = {}; }},
      {"six planes without M",
       [](ed_tables& t) {
         t.params.planes[4] = t.params.planes[5] = t.params.planes[0];
         t.params.planes[1] = {};
       }},
  };
  const refusal of_dots[] = {
      {"scale_x 3", [](ed_tables& t) { t.params.planes[2].scale_x = 3; }},
      {"scale_y 0", [](ed_tables& t) { t.params.planes[2].scale_y = 0; }},
      {"scale_y 5", [](ed_tables& t) { t.params.planes[2].scale_y = 5; }},
      {"pattern width", [](ed_tables& t) { t.params.pattern_width = 0; }},
      {"pattern height", [](ed_tables& t) { t.params.pattern_height = 0; }},
  };
  const auto expect_refused = [](ed_tables tables, const refusal& refusal) {
    fenced_block mem(ed_library::create(tables, 20, 0, nullptr));
    refusal.spoil(tables);
    EXPECT_EQ(ed_library::create(tables, 20, 0, nullptr), 0u) << refusal.what;
    EXPECT_EQ(ed_library::create(tables, 20, 0, mem.data()), 0u) << refusal.what;
    EXPECT_TRUE(mem.untouched()) << refusal.what;
  };
  for (const refusal& refusal : either) expect_refused(packed, refusal), expect_refused(dots, refusal);
  for (const refusal& refusal : of_dots) expect_refused(dots, refusal);
  for (const unsigned bits : {1u, 2u, 4u}) {
    expect_refused(plain_tables(4, 2), {"more levels than codes", [&](ed_tables& t) {
                                          t.params.planes[5] = t.params.planes[0];  // in use, though not produced
                                          t.params.planes[5].bits = bits;
                                          t.params.planes[5].level_values.resize((1u << bits) + 1);
                                          t.params.planes[5].thresholds.resize(1u << bits);
                                        }});
  }
}

TEST(ed, every_prefix_of_a_table_is_refused) {
  std::mt19937 random(3);
  for (const bool extended : {false, true}) {
    ed_tables tables = random_ed_tables({.planes = 6, .extended = extended}, random);
    tables.spread.rows.resize(9);
    const kit::bytes spread = tables.spread.encode(), params = tables.params.encode();
    std::vector<std::uint32_t> mem(ed_library::create(tables, 9, 0, nullptr));
    for (void* const at : {static_cast<void*>(nullptr), static_cast<void*>(mem.data())}) {
      const auto create = [&](std::size_t spread_size, std::size_t params_size) {
        guarded_copy s{std::span(spread).first(spread_size)}, p{std::span(params).first(params_size)};
        return vrk_create_ed(9, s.size(), s.data(), p.size(), p.data(), 0, at);
      };
      for (std::size_t n = 0; n < spread.size(); ++n) EXPECT_EQ(create(n, params.size()), 0u);
      for (std::size_t n = 0; n < params.size(); ++n) EXPECT_EQ(create(spread.size(), n), 0u);
      EXPECT_NE(create(spread.size(), params.size()), 0u);
      EXPECT_EQ(vrk_create_ed(9, 99, nullptr, std::uint32_t(params.size()), params.data(), 0, at), 0u);
      EXPECT_EQ(vrk_create_ed(9, std::uint32_t(spread.size()), spread.data(), 99, nullptr, 0, at), 0u);
    }
  }
}

TEST(ed, blocks_fit_the_line) {
  ed_library library(plain_tables(1, 2), 100, 0);
  EXPECT_TRUE(library.start(100, 0, 0));
  EXPECT_TRUE(library.start(40, 60, 0));
  EXPECT_TRUE(library.start(0, 100, 0));
  EXPECT_FALSE(library.start(41, 60, 0));
  EXPECT_FALSE(library.start(0xFFFFFFFF, 2, 0));
}

TEST(ed, white_paper_leaves_no_dot_and_no_error) {
  ed_tables tables = plain_tables(4, 2);
  for (auto& plane : tables.params.planes)
    std::fill(plane.modulation.begin(), plane.modulation.end(), std::int8_t{-128});
  for (const unsigned flags : all_widths) {
    ed_library library(tables, 50, flags);
    library.start(50, 0, 0);
    const kit::bytes before(library.bytes().begin(), library.bytes().end());
    for (int line = 0; line < 3; ++line)
      EXPECT_EQ(library.line(std::vector<std::uint16_t>(200), false), packed_lines(4, kit::bytes(7)));
    library.start(50, 0, 0);
    EXPECT_TRUE(std::ranges::equal(before, library.bytes()));
  }
}

// All planes at one level, whatever the sample: the codes alone are left.
kit::bytes codes_of_level(unsigned level, unsigned levels, unsigned bits, unsigned flags, unsigned count) {
  ed_tables tables = {kit::ed_parameters(1, levels), kit::ed_distribution("none")};
  kit::ed_plane& k = tables.params.planes[3];
  k.bits = bits;
  for (unsigned i = 0; i + 1 < levels; ++i) k.thresholds[i] = i < level ? std::uint16_t{0} : std::uint16_t{1023};
  ed_library library(tables, count, flags);
  library.start(count, 0, 0);
  return library.line(std::vector<std::uint16_t>(count, 1), false)[0];
}

TEST(ed, three_levels_of_k_skip_a_code) {
  const auto pair = [](unsigned level, unsigned levels, unsigned flags) {
    return codes_of_level(level, levels, 2, flags, 4)[0];
  };
  EXPECT_EQ(pair(1, 3, VRK_K_CODE3), 0xAA);
  EXPECT_EQ(pair(2, 3, VRK_K_CODE3), 0xFF);
  EXPECT_EQ(pair(1, 3, 0), 0x55);
  EXPECT_EQ(pair(1, 2, VRK_K_CODE3), 0x55);
  EXPECT_EQ(pair(2, 4, VRK_K_CODE3), 0xAA);
}

TEST(ed, random_codes_start_with_41_on_every_thread) {
  const auto on_fresh_thread = [](unsigned level, unsigned levels, unsigned bits) {
    kit::bytes line;
    std::thread([&] { line = codes_of_level(level, levels, bits, VRK_RANDOM4, 2); }).join();
    return line[0];
  };  // the first two values are 41 and 18467
  EXPECT_EQ(on_fresh_thread(1, 5, 4), 0x57);
  EXPECT_EQ(on_fresh_thread(2, 5, 4), 0x88);
  EXPECT_EQ(on_fresh_thread(1, 6, 4), 0x77);
  EXPECT_EQ(on_fresh_thread(2, 6, 4), 0x88);
  EXPECT_EQ(on_fresh_thread(3, 5, 4), 0x33);
  EXPECT_EQ(on_fresh_thread(1, 7, 4), 0x11);
  EXPECT_EQ(on_fresh_thread(1, 3, 2), 0x50);
}

TEST(ed, random_codes_are_drawn_plane_by_plane) {
  std::thread([] {
    std::mt19937 random(4);
    ed_tables tables = plain_tables(6, 5);
    tables.params.planes[0] = kit::ed_parameters(1, 6).planes[3];
    ed_reference reference(tables.params, tables.spread, 41, VRK_RANDOM4);
    ed_library library(tables, 41, VRK_RANDOM4);
    reference.start(41, 0, 0), library.start(41, 0, 0);
    for (int line = 0; line < 20; ++line) {
      const auto samples = random_samples(41 * 6, 0, random);
      ASSERT_EQ(library.line(samples, line % 2), reference.line(samples));
    }
  }).join();
}

TEST(ed, dots_of_a_cell) {
  struct {
    std::uint16_t cell;
    unsigned across, lines;
    packed_lines dots;
  } const cases[] = {
      {0x8888, 1, 4, {{0xF8}, {0xF8}, {0xF8}, {0xF8}}},
      {0x8421, 1, 4, {{0xF8}, {0}, {0}, {0}}},
      {0x8421, 2, 2, {{0xAA, 0x80}, {0x55, 0x40}}},
      {0x8421, 4, 3, {{0x88, 0x88, 0x80}, {0x44, 0x44, 0x40}, {0x22, 0x22, 0x20}}},
  };
  for (const auto& c : cases) {
    ed_tables tables = plain_tables(1, 2);
    tables.params.version = "0020";
    kit::ed_plane& k = tables.params.planes[3];
    k.scale_x = c.across, k.scale_y = c.lines, k.patterns = {{c.cell}, {0}};  // level 0 of a plane alone has dots
    ed_library library(tables, 5, 0);
    library.start(5, 0, 7);
    EXPECT_EQ(library.line(std::vector<std::uint16_t>(5), true), c.dots);
  }
}

TEST(ed, info_tells_the_lines_of_every_plane) {
  ed_tables tables = plain_tables(4, 2);
  tables.params.planes[3] = kit::ed_parameters(1, 4).planes[3];
  tables.params.planes[4].bits = 4;  // bits of a plane that is not in use
  ed_library mixed(tables, 4801, 0);
  EXPECT_EQ(mixed.info().method, 1u);
  EXPECT_EQ(mixed.info().plane_count, 4);
  EXPECT_TRUE(std::ranges::equal(mixed.info().plane_bits, std::vector<std::uint8_t>{2, 1, 1, 1, 4, 1}));
  EXPECT_TRUE(std::ranges::equal(mixed.info().line_bytes, std::vector<std::uint32_t>{1201, 601, 601, 601, 0, 0}));
  EXPECT_EQ(mixed.info().same_line_bytes, 0u);
  EXPECT_EQ(mixed.info().same_scale, 1u);
  EXPECT_EQ(mixed.info().dot_expansion, 0u);
  EXPECT_TRUE(mixed.info().plane_scale[3].scale_x == 1 && mixed.info().plane_scale[4].scale_x == 0);

  std::mt19937 random(5);
  tables = random_ed_tables({.planes = 4, .extended = true}, random);
  for (auto& plane : tables.params.planes) plane.scale_x = plane.scale_y = 1;
  tables.params.planes[3].scale_x = tables.params.planes[3].scale_y = 2;
  ed_library dots(tables, 101, 0);
  EXPECT_TRUE(std::ranges::equal(dots.info().plane_bits, std::vector<std::uint8_t>{1, 1, 1, 1, 0, 0}));
  EXPECT_TRUE(std::ranges::equal(dots.info().line_bytes, std::vector<std::uint32_t>{26, 13, 13, 13, 0, 0}));
  EXPECT_EQ(dots.info().same_scale, 0u);
  EXPECT_EQ(dots.info().dot_expansion, 1u);
  EXPECT_EQ(dots.info().plane_scale[0].scale_y, 2u);
  EXPECT_EQ(vrk_exec_ed(dots.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0u);

  tables.params.planes[0] = {};
  ed_library k_alone(tables, 101, 0);
  EXPECT_EQ(k_alone.info().plane_count, 1);
  EXPECT_TRUE(k_alone.info().same_line_bytes == 1 && k_alone.info().same_scale == 1);
  for (ed_library* const library : {&mixed, &dots, &k_alone}) {
    std::uint8_t bits[6];
    vrk_query_ed_bitlen(library->handle(), bits);
    EXPECT_TRUE(std::ranges::equal(bits, library->info().plane_bits));
  }
}

}  // namespace
