// The program `vrk`: plane files and pictures out, and what it says when something is wrong.
#include <gtest/gtest.h>

#include "kit/blob.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/presets.h"
#include "tests/print_job.h"

namespace {

using namespace vrk::tool;
using namespace vrk::test;
namespace kit = vrk::kit;
namespace fs = std::filesystem;

struct tool : print_job {};

TEST_F(tool, planes_hold_the_ink_that_the_colour_table_asks_for) {
  constexpr unsigned across = 203, down = 120;
  const std::string page = save("page.ppm", flat_page(across, down));
  for (const unsigned inks : {4u, 6u}) {
    for (const unsigned levels : {2u, 3u, 4u, 16u}) {
      for (const unsigned precision : {8u, 10u, 16u}) {
        print_options options;
        options.csc2 = save("constant.csc2", constant_inks(inks));
        options.levels = levels;
        options.precision = precision;
        const auto image = open_image(page);
        const print_report report = print_page(*image, options, dir_ / "out");
        ASSERT_EQ(report.planes.size(), inks);
        for (unsigned p = 0; p < inks; ++p) {
          EXPECT_NEAR(report.planes[p].coverage, (p + 1) / 8.0, 0.01)
              << inks << " inks, " << levels << " levels, precision " << precision << ", plane " << p;
          const std::string header =
              levels == 2 ? "P4\n203 120\n" : "P5\n203 120\n" + std::to_string(levels - 1) + "\n";
          const std::string plane = load(dir_ / "out" / report.planes[p].file);
          EXPECT_EQ(plane.substr(0, header.size()), header);
          EXPECT_EQ(plane.size() - header.size(), levels == 2 ? 26u * down : across * down);
        }
      }
    }
  }
}

TEST_F(tool, one_ink_prints_grays_alike_from_rgb_and_gray_pictures) {
  std::string gray = flat_page(64, 64);
  gray = "P5 64 64 255\n" + gray.substr(gray.size() - 64 * 64);
  print_options options;
  options.inks = 1;
  for (const std::string& file : {save("page.ppm", flat_page(64, 64)), save("page.pgm", gray)}) {
    const auto image = open_image(file);
    const print_report report = print_page(*image, options, dir_ / "out");
    ASSERT_EQ(report.planes.size(), 1u);
    EXPECT_EQ(report.planes[0].file, "k.pbm");
    EXPECT_NEAR(report.planes[0].coverage, 1 - 0.2159, 0.01);  // level 128 is 21.59 % of white's light
  }
}

TEST_F(tool, a_print_that_fails_leaves_no_file) {
  std::string page = flat_page(100, 100);
  page.resize(page.size() - 1);
  const auto image = open_image(save("page.ppm", page));
  const std::string said = complaint([&] { print_page(*image, {}, dir_ / "out"); });
  EXPECT_NE(said.find("page.ppm: "), std::string::npos) << said;
  EXPECT_TRUE(fs::is_empty(dir_ / "out"));
}

kit::bytes changed(kit::bytes image, std::size_t at, std::uint8_t value) {
  image[at] = value;
  return image;
}

TEST_F(tool, says_why_a_table_is_refused) {
  const kit::bytes inks = constant_inks(4), rgb = [] {
    kit::color_table colors;
    colors.grid = {2, 3, std::vector<std::uint16_t>(24)};
    return colors.encode();
  }();
  const kit::bytes levels = kit::ed_parameters(4, 2).encode(), spread = kit::ed_distribution().encode();
  kit::curve_image curve;
  curve.curves.resize(1);
  curve.entries = 512;
  const kit::bytes short_levels(levels.begin(), levels.end() - 1);
  const struct {
    std::string print_options::*option;
    kit::bytes image;
    std::string said;
  } cases[] = {
      {&print_options::csc1, changed(rgb, 3, '2'), "has magic \"csc2\", expected \"csc1\""},
      {&print_options::csc1, changed(rgb, 9, 4), "has output channels 4, expected 3"},
      {&print_options::csc1, changed(rgb, 11, 6), "has grid encoding 6, expected 0, 1, 2, 3 or 7"},
      {&print_options::csc2, spread, "has magic \"edtb\", expected \"csc2\""},
      {&print_options::csc2, {}, "is empty"},
      {&print_options::csc2, changed(inks, 9, 255), "has output channels 255, expected 4 or 6"},
      {&print_options::csc2, changed(inks, 6, '2'), "has version \"0020\""},
      {&print_options::csc2, changed(inks, 10, 3), "has length 88, expected 246 bytes for 3 grid points"},
      {&print_options::csc2, changed(changed(inks, 16, 0xFF), 17, 0xFF),
       "has G axis position 1 at 65535, expected more than 65535"},
      {&print_options::csc2, curve.encode(), "has entry count 512, expected 1024"},
      {&print_options::edpr, changed(levels, 14, 0), "has an empty modulation matrix"},
      {&print_options::edpr, changed(levels, 11, 0), "has no levels for K"},
      {&print_options::edpr, changed(levels, 8, 3), "has level count of plane C 3, expected at most 2"},
      {&print_options::edpr, changed(levels, 21, 3), "has 3 bits per pixel, expected 1, 2, 4 or 8"},
      {&print_options::edpr, short_levels, "for its lists"},
      {&print_options::edtb, changed(spread, 10, 5), "has column count 5, expected 7"},
      {&print_options::edtb, kit::bytes(spread.begin(), spread.begin() + 500), "has length 500, expected 7166"},
  };
  for (const auto& c : cases) {
    print_options options;
    options.*c.option = save("table", c.image);
    const auto image = open_image(save("page.ppm", flat_page(8, 8)));
    const std::string said = complaint([&] { print_page(*image, options, dir_ / "out"); });
    EXPECT_EQ(said.find(path("table") + ": "), 0u) << said;
    EXPECT_NE(said.find(c.said), std::string::npos) << said << "\nexpected: " << c.said;
    EXPECT_FALSE(fs::exists(dir_ / "out"));
  }
}

TEST_F(tool, takes_tables_out_of_blobs) {
  kit::blob blob;
  blob.type = "CS2T";
  blob.class_code = 'C';
  blob.entries = {{"XN  ", constant_inks(4)}, {"XP  ", constant_inks(6)}};
  const std::string file = save("colors.blob", blob.encode());
  const struct {
    std::string selectors, said;
    std::size_t planes;
  } cases[] = {{":family=X", "", 4},
               {":family=X,kind=4", "", 6},
               {"", "has no table for these selectors", 0},
               {":family=Y", "family is \"Y\", expected H or X", 0},
               {":sort=4", "\"sort\" is no selector", 0}};
  for (const auto& c : cases) {
    print_options options;
    options.blobs = {file + c.selectors};
    const auto image = open_image(save("page.ppm", flat_page(8, 8)));
    std::size_t planes = 0;
    const std::string said = complaint([&] { planes = print_page(*image, options, dir_ / "out").planes.size(); });
    EXPECT_EQ(planes, c.planes) << c.selectors << ": " << said;
    EXPECT_NE(said.find(c.said), std::string::npos) << said;
  }
}

}  // namespace
