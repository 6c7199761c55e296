// Every row of the family of line kernels, called as it is.
#include "base/carver.h"
#include "base/flags.h"
#include "halftone/ed/ed_kernels.h"
#include "kit/presets.h"
#include "tests/halftone/ed_job.h"

namespace {

using namespace vrk;
using namespace vrk::test;

void expect_levels_of_definition(const ed_row& row, const ed_tables& tables, unsigned width, std::mt19937& random) {
  ed_reference reference(tables, width, row.flags);
  ed_library library(tables, width, row.flags);
  ed_handle& h = record_of<ed_handle>(library.get());
  EXPECT_EQ(&ed_rows()[h.kernel], &row);
  // Lines of the right half leave errors in columns that they do not reach, where nothing but the next block takes
  // them.
  for (const unsigned block_x : {0u, width / 2, 0u}) {
    library.start(width - block_x, block_x, h.line_counter), reference.start(width - block_x, block_x, h.line_counter);
    for (const unsigned end = h.line_counter + 4 + 16 * (block_x != 0); h.line_counter < end; ++h.line_counter) {
      samples values = random_samples((width - block_x) * row.planes, row.flags, random);
      if (random() % 3 == 0) std::ranges::fill(values, u16(random() % 2 == 0 ? 0 : 65535));
      if (!has(row.flags, VRK_IN16)) std::ranges::transform(values, values.begin(), [](u16 v) { return u16(v & 255); });
      kit::bytes bytes = packed(values, has(row.flags, VRK_IN16));
      bytes.insert(bytes.begin(), h.line_counter % 2, 0);
      guarded_copy src(bytes);
      (h.line_counter % 2 == 0 ? row.even : row.odd)(h, src.data() + h.line_counter % 2);
      reference.line(values);
      for (std::size_t p = 0; p < row.planes; ++p) {
        ASSERT_TRUE(std::ranges::equal(reference.levels()[p], std::span(h.level_line.get() + p * width, h.block_width)))
            << row.planes << " planes, flags " << row.flags << ", width " << width << ", line " << h.line_counter;
      }
    }
  }
}

TEST(ed_rows, give_the_levels_of_the_definition) {
  std::mt19937 random(9);
  for (const ed_row& row : ed_rows()) {
    for (const unsigned width : {0u, 1u, 2u, 3u, 4u, 5u, 17u, 1000u, 1001u}) {
      expect_levels_of_definition(
          row, random_ed_tables({.planes = row.planes, .wild = width % 2 != 0, .two_levels = row.two_levels}, random),
          width, random);
    }
  }
}

struct edge {
  const char* what;
  bool qualifies;
  void (*change)(ed_tables&);
};

// Modulation of the last pixel of the matrix only.
void modulate(ed_tables& tables, int amount) { tables.params.planes[2].modulation = {0, 0, i8(amount)}; }
kit::ed_plane& yellow(ed_tables& tables) { return tables.params.planes[2]; }
void send(ed_tables& tables, std::size_t row, kit::edtb_row amounts) { tables.distribution.rows[row] = amounts; }
void send_below(ed_tables& tables, int most, int least) {
  tables.distribution.rows.assign(511, {});
  send(tables, 200, {0, 0, 0, 0, i16(most)}), send(tables, 300, {0, 0, 0, 0, i16(least)});
}

// Tables that the kernels for two levels just serve and just do not: to these lead lines as defined, too.
void expect_edges(const ed_tables& qualifying, unsigned planes, unsigned flags, std::span<const edge> edges) {
  std::mt19937 random(3);
  for (const edge& e : edges) {
    ed_tables tables = qualifying;
    e.change(tables);
    SCOPED_TRACE(testing::Message() << e.what << ", flags " << flags);
    const ed_row& row = ed_rows()[record_of<ed_handle>(ed_library(tables, 99, flags).get()).kernel];
    EXPECT_EQ(row.two_levels, e.qualifies);
    EXPECT_TRUE(row.planes == planes && row.flags == flags);
    for (int run = 0; run < 3; ++run) expect_levels_of_definition(row, tables, 99, random);
  }
}

ed_tables edge_tables(unsigned planes) {
  kit::modulation none{.width = 3};
  none.planes.fill({0, 0, 0});
  return {kit::ed_parameters(planes, 2, none), kit::ed_distribution("fan")};
}

TEST(ed_rows, two_levels_are_chosen_for_tables_that_qualify) {
  static constexpr edge of_both[] = {
      {"fan", true, [](ed_tables&) {}},
      {"what the programs use", true,
       [](ed_tables& t) {
         t.params = kit::ed_parameters(4, 2, kit::ed_modulation());
         t.distribution = kit::ed_distribution();
       }},
      {"a third level", false,
       [](ed_tables& t) { yellow(t).level_values.push_back(1023), yellow(t).thresholds.push_back(1023); }},
      {"level 0 stands for 4", false, [](ed_tables& t) { yellow(t).level_values[0] = 4; }},
      {"no error sends something back", false,
       [](ed_tables& t) {
         send(t, 255, {0, 0, 1});
       }},
      {"no error sends something below", false,
       [](ed_tables& t) {
         send(t, 255, {0, 0, 0, 0, -1});
       }},
      {"level 1 stands for 0", false, [](ed_tables& t) { yellow(t).level_values[1] = 0; }},
      {"0 just stays level 0", true, [](ed_tables& t) { yellow(t).thresholds[0] = 128, modulate(t, -124); }},
      {"0 becomes level 1", false, [](ed_tables& t) { yellow(t).thresholds[0] = 124, modulate(t, -124); }},
  };
  static constexpr edge of_10_bits[] = {
      {"a threshold below 0", false, [](ed_tables& t) { yellow(t).thresholds[0] = 65000; }},
      {"level 0 stands for 1", false, [](ed_tables& t) { yellow(t).level_values[0] = 1; }},
      {"the highest threshold", true, [](ed_tables& t) { yellow(t).thresholds[0] = 1000, modulate(t, 24); }},
      {"a threshold too high", false, [](ed_tables& t) { yellow(t).thresholds[0] = 1000, modulate(t, 25); }},
      {"the highest value", true, [](ed_tables& t) { yellow(t).level_values[1] = 1024 + 400, modulate(t, -112); }},
      {"a value too high", false, [](ed_tables& t) { yellow(t).level_values[1] = 1024 + 401, modulate(t, -112); }},
      {"most that may go ahead", true,
       [](ed_tables& t) {
         send(t, 300, {135, 120});
       }},
      {"more than may go ahead", false,
       [](ed_tables& t) {
         send(t, 300, {136, 120});
       }},
      {"least that may go ahead", true,
       [](ed_tables& t) {
         send(t, 300, {-135, -120});
       }},
      {"less than may go ahead", false,
       [](ed_tables& t) {
         send(t, 300, {-136, -120});
       }},
      {"ahead more than fits in a word", false,
       [](ed_tables& t) {
         send(t, 255, {30000, 30000});
       }},
      {"amounts that just fit in a word", true, [](ed_tables& t) { send_below(t, 4095, -4096); }},
      {"amounts that do not", false, [](ed_tables& t) { send_below(t, 4095, -4097); }},
  };
  static constexpr edge of_8_bits[] = {
      {"level 0 stands for 3 of 1023", true, [](ed_tables& t) { yellow(t).level_values[0] = 3; }},
      {"a 767th row", true,
       [](ed_tables& t) {
         t.distribution.rows.resize(767, {7, -8, 9, 10, 11});
       }},
      {"a 768th row", false,
       [](ed_tables& t) {
         t.distribution.rows.resize(768, {7, -8, 9, 10, 11});
       }},
      {"a lone row, which is that of no error", false, [](ed_tables& t) { t.distribution.rows.resize(1); }},
      {"amounts that just fit in a word", true, [](ed_tables& t) { send_below(t, 16383, -16384); }},
      {"amounts that do not", false, [](ed_tables& t) { send_below(t, 16383, -16385); }},
      {"rows of negative errors only", true, [](ed_tables& t) { t.distribution.rows.resize(256); }},
  };
  for (const unsigned flags : {0u, VRK_PREC10, VRK_IN16 | VRK_PREC10}) expect_edges(edge_tables(4), 4, flags, of_both);
  for (const unsigned flags : {VRK_PREC10, VRK_IN16 | VRK_PREC10}) expect_edges(edge_tables(4), 4, flags, of_10_bits);
  expect_edges(edge_tables(4), 4, 0, of_8_bits);
  static constexpr edge of_one_plane[] = {
      {"rows that the handle just holds", true, [](ed_tables& t) { t.distribution.rows.resize(427); }},
      {"rows that it does not", false, [](ed_tables& t) { t.distribution.rows.resize(426); }},
  };
  expect_edges(edge_tables(1), 1, VRK_PREC10, of_one_plane);
}

}  // namespace
