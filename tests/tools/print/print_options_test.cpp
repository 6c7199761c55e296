// What the options of `vrk print` do to the dots.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "kit/color_grids.h"
#include "kit/separation.h"
#include "kit/srgb.h"
#include "tests/tools/print/print_job.h"
#include "tools/image/resolution.h"

namespace {

using namespace vrk::test;
using vrk::tool::text_of;
namespace kit = vrk::kit;

struct options : print_job {};

TEST_F(options, change_the_print) {
  const std::string page = busy_page();
  std::vector<std::vector<std::string>> seen{print(page, few_points_).planes};
  for (const char* option :
       {"--balance 0,3,0", "--lift 5", "--contrast -2", "--balance2 0,2", "--curve b=s:0.5",
        "--curve points:0/0,50/60,100/100", "--post y=gamma:1.2", "--filter line", "--modulation none", "--precision 8",
        "--halftone dither", "--matrix bayer4", "--width16", "--levels 3"}) {
    seen.push_back(print(page, few_points_ + option).planes);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen.back()), 1) << option;
  }
}

TEST_F(options, of_layout_and_threads_change_nothing) {
  const kit::color_table saturated{.grid = kit::matrix_grid(kit::saturation_matrix(1.3), 5)};
  const std::string csc1 = " --csc1 " + save("saturated.csc1", saturated.encode()), page = busy_page();
  for (const std::string& option : {few_points_ + "--lift 1 --curve s:0.3 --curve r=gamma:1.1 --split --width16",
                                    std::string("--balance2 1,-1 --inks 6 --post dot-gain:0.1 --cells 2x2"),
                                    few_points_ + "--matrix screens" + csc1}) {
    const printed plain = print(page, option + " --threads 1");
    for (const char* way :
         {" --layout bgr", " --layout bgrx", " --layout xrgb", " --threads 2", " --threads 3", " --threads 8"}) {
      EXPECT_EQ(print(page, option + way).planes, plain.planes) << option << way;
    }
  }
}

TEST_F(options, lay_down_the_ink_that_they_say) {
  const std::string page = save("page.ppm", flat_page(203, 120));
  const struct {
    const char* curves;
    double k, others;  // shares of what the colour table gives
  } cases[] = {{"", 1, 1}, {" --post ink-limit:0.5", 0.5, 0.5}, {" --post k=ink-limit:0.5", 0.5, 1}};
  for (const unsigned inks : {4u, 6u}) {
    const std::string table = "--csc2 " + save("constant.csc2", constant_inks(inks));
    for (const char* halftone :
         {"", " --precision 8", " --width16", " --levels 3 --precision 8", " --levels 4", " --levels 16 --precision 16",
          " --cells 4x2", " --halftone dither", " --halftone dither --levels 200 --width16"}) {
      for (const auto& c : cases) {
        std::vector<double> shares{c.k / 8};
        while (shares.size() < inks) shares.push_back(c.others * double(shares.size() + 1) / 8);
        expect_inks(page, table + halftone + c.curves, shares);
      }
    }
  }
  const kit::ink_pair cyan = kit::split_cyan(2 / 8.0), magenta = kit::split_magenta(3 / 8.0);
  expect_inks(page, "--split --csc2 " + save("constant.csc2", constant_inks(4)),
              {1 / 8.0, cyan.full, magenta.full, 4 / 8.0, cyan.light, magenta.light});
}

// One ink is what light is missing, and a curve of gamma 2 makes level 1/2 its root.
TEST_F(options, print_rgb_and_gray_pictures_alike_with_one_ink) {
  const double middle = 128 / 255.0, lifted = std::sqrt(middle);
  const auto ink = [](double level) { return std::vector{1 - kit::srgb_to_linear(level)}; };
  for (const std::string& page : {save("page.ppm", flat_page(64, 64)), save("page.pgm", flat_page(64, 64, false))}) {
    expect_inks(page, "--inks 1", ink(middle));
    expect_inks(page, "--inks 1 --curve gamma:2", ink(lifted));
    expect_inks(page, "--inks 1 --curve r=gamma:2", ink(0.3 * lifted + 0.7 * middle));
    expect_inks(page, "--inks 1 --curve b=gamma:2", ink(0.1 * lifted + 0.9 * middle));
  }
}

// Paper without ink: zeros in a plane of bits, the highest gray in others.
TEST_F(options, give_the_plane_files_their_form_and_size) {
  const std::string page = save("white.ppm", "P6 97 40 255\n" + std::string(3 * 97 * 40, '\xFF'));
  const auto expect_files = [&](const std::string& option, const std::string& file) {
    for (const std::string& plane : print(page, option).planes) EXPECT_TRUE(plane == file) << option;
  };
  for (const unsigned levels : {3u, 4u, 16u}) {
    expect_files(few_points_ + "--levels " + std::to_string(levels),
                 "P5\n# 600 dpi\n97 40\n" + std::to_string(levels - 1) + "\n" + std::string(97 * 40, char(levels - 1)));
  }
  for (const unsigned x : {1u, 2u, 4u}) {
    for (const unsigned y : {1u, 2u, 3u, 4u}) {
      expect_files((x == 2 ? "--inks 1" : few_points_) + " --cells " + std::to_string(x) + "x" + std::to_string(y),
                   "P4\n# " + text_of({600.0 * x, 600.0 * y}) + " dpi\n" + std::to_string(97 * x) + " " +
                       std::to_string(40 * y) + "\n" + std::string((97 * x + 7) / 8 * (40 * y), '\0'));
    }
  }
}

TEST_F(options, let_planes_differ_in_scale) {
  const std::string page = save("page.ppm", flat_page(160, 120));
  kit::edpr_table mixed = kit::cell_parameters(4, 1, 1, 2);
  constexpr std::size_t c = 0, k = 3;  // table order
  mixed.planes[k] = kit::cell_parameters(1, 2, 3, 7).planes[k];
  mixed.planes[c].scale_x = 4;
  mixed.planes[c].patterns = {{0}, {0xF000}};
  expect_inks(page,
              "--csc2 " + save("constant.csc2", constant_inks(4)) + " --edpr " + save("mixed.edpr", mixed.encode()),
              {1.0 / 8, 2.0 / 8, 3.0 / 8, 4.0 / 8});
  EXPECT_TRUE(load(path("out/k.pbm")).starts_with("P4\n# 1200 x 1800 dpi\n320 360\n"));
  EXPECT_TRUE(load(path("out/c.pbm")).starts_with("P4\n# 2400 x 600 dpi\n640 120\n"));
  EXPECT_TRUE(load(path("out/y.pbm")).starts_with("P4\n# 600 dpi\n160 120\n"));
}

// The noise of many levels must not go on setting dots where nothing is left to print.
TEST_F(options, leave_the_paper_bare_below_a_tone) {
  std::string tone = flat_page(160, 120);
  std::fill(tone.end() - 3 * 160 * 90, tone.end(), '\xFF');
  const std::string page = save("page.ppm", tone);
  for (const char* const halftone : {"--levels 2", "--cells 4x4"}) {
    print(page, halftone);
    for (const char* const plane : {"k", "c", "m", "y"}) {
      const std::string dots = load(path(std::string("out/") + plane + ".pbm"));
      EXPECT_EQ(dots.find_first_not_of('\0', dots.size() / 2), std::string::npos) << plane;
    }
  }
}

TEST_F(options, take_pictures_of_inks) {
  for (const unsigned bytes : {1u, 2u}) {
    std::string page = "P7\nWIDTH 160\nHEIGHT 120\nDEPTH 4\nMAXVAL " + std::string(bytes == 1 ? "255" : "65535") +
                       "\nTUPLTYPE CMYK\nENDHDR\n";
    for (unsigned i = 0; i < 160 * 120; ++i) {
      for (const char ink : {'\x20', '\x40', '\x60', '\x80'}) page.append(bytes, ink);
    }
    const std::vector<double> kcmy{0x80 / 255.0, 0x20 / 255.0, 0x40 / 255.0, 0x60 / 255.0};
    for (const char* option : {"", "--width16"}) expect_inks(save("page.pam", page), option, kcmy);
  }
}

TEST_F(options, are_refused_where_they_make_no_sense) {
  const std::string page = save("page.ppm", flat_page(8, 8));
  const struct {
    const char *option, *said;
  } cases[] = {
      {"--balance2 1,1 --lift 1", "belongs to the second pre-processor"},
      {"--split --inks 4", "--split makes six inks"},
      {"--matrix screens --filter fan", "--filter belongs to error diffusion"},
      {"--halftone dither --cells 2x2", "--cells belong to error diffusion"},
      {"--halftone ed --matrix screens", "--matrix belongs to the dither"},
      {"--levels 17", "has 2 to 16"},
      {"--cells 2x2 --levels 6", "a cell has 2 to 5"},
      {"--cells 3x2", "expected SXxSY"},
      {"--width16 --precision 8", "--precision can only be 16"},
      {"--edpr LEVELS --levels 2", "both give the levels"},
      {"--edtb SPREAD --filter fan", "both say where the errors go"},
      {"--detail 8 7", "--detail 8 7: lies outside the picture, expected 0 to 7 and 0 to 7"},
      {"--detail nan 7", "nan not in range"},
      {"--balance 21,0,0", "not in range -20 to 20"},
      {"--precision=\"\"", "not in {8,10,16}"},
      {"--curve gamma:nan", "curve gamma:nan: expected a number from 0.1 to 10"},
      {"--curve s:-nan", "expected a number from -1 to 1"},
      {"--post dot-gain:inf", "expected a number from 0 to 0.25"},
      {"--post ink-limit:nan", "expected a number from 0 to 1"},
      {"--curve points:0/0,0/50", "in rising order of IN"},
      {"--curve gamma:2 --curve s:1", "s:1: takes the place of gamma:2"},
      {"--curve r=gamma:2 --curve r=gamma:3", "gamma:3: takes the place of gamma:2"},
      {"--curve r=", "is empty"},
      {"--post lm=gamma:2", "belongs to plane lm, which a print in 4 inks"},
      {"--split --post gamma:2", "--split brings a curve table for all planes"},
  };
  const std::map<std::string, kit::bytes> tables{{"LEVELS", kit::ed_parameters(4, 2).encode()},
                                                 {"SPREAD", kit::ed_distribution().encode()}};
  for (const auto& c : cases) {
    std::string option = c.option;
    for (const auto& [name, image] : tables) {
      if (const auto at = option.find(name); at != option.npos) option.replace(at, name.size(), save(name, image));
    }
    expect_complaint(page, option, c.said);
  }
}

}  // namespace
