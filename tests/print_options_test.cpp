// What the options of `vrk print` do to the dots.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "kit/color_grids.h"
#include "kit/ink_model.h"
#include "kit/separation.h"
#include "tests/print_job.h"

namespace {

using namespace vrk::tool;
using namespace vrk::test;
namespace kit = vrk::kit;

struct options : print_job {};

TEST_F(options, change_the_print_or_only_the_way_to_it) {
  const std::string page = busy_page();
  const printed plain = print(page, [](print_options&) {});
  const change different[] = {
      [](print_options& o) {
        o.balance = {0, 3, 0};
      },
      [](print_options& o) { o.lift = 5; },
      [](print_options& o) { o.contrast = -2; },
      [](print_options& o) {
        o.balance2 = {0, 2};
      },
      [](print_options& o) { o.curves = {"b=s:0.5"}; },
      [](print_options& o) { o.curves = {"points:0/0,50/60,100/100"}; },
      [](print_options& o) { o.plane_curves = {"y=gamma:1.2"}; },
      [](print_options& o) { o.filter = "line"; },
      [](print_options& o) { o.modulation = "none"; },
      [](print_options& o) { o.precision = 8; },
      [](print_options& o) { o.halftone = "dither"; },
      [](print_options& o) { o.matrix = "bayer4"; },
      [](print_options& o) { o.width16 = true; },
      [](print_options& o) { o.levels = 3; },
  };
  std::vector<std::string> seen{plain.planes};
  for (const change& set : different) {
    seen.push_back(print(page, set).planes);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen.back()), 1) << "change " << seen.size() - 1;
  }

  const change everything[] = {
      [](print_options& o) {
        o.lift = 1, o.curves = {"s:0.3", "r=gamma:1.1"}, o.split = o.width16 = true;
      },
      [](print_options& o) {
        o.balance2 = {1, -1}, o.inks = 6, o.plane_curves = {"dot-gain:0.1"}, o.cells = {2, 2};
      },
      [](print_options& o) { o.csc1 = "saturated.csc1", o.matrix = "screens"; },
  };
  kit::color_table saturated{.grid = kit::matrix_grid(kit::saturation_matrix(1.3), 5)};
  const std::string csc1 = save("saturated.csc1", saturated.encode());
  for (const change& set : everything) {
    const auto one_way = [&](pixel_layout layout, unsigned threads) {
      return print(page,
                   [&](print_options& o) {
                     set(o);
                     if (!o.csc1.empty()) o.csc1 = csc1;
                     o.layout = layout;
                     o.threads = threads;
                   })
          .planes;
    };
    const std::string planes = one_way(pixel_layout::rgb, 1);
    for (const pixel_layout layout : {pixel_layout::bgr, pixel_layout::bgrx, pixel_layout::xrgb}) {
      EXPECT_EQ(one_way(layout, 1), planes);
    }
    for (const unsigned threads : {2u, 3u, 8u}) EXPECT_EQ(one_way(pixel_layout::rgb, threads), planes);
  }
}

TEST_F(options, lay_down_the_ink_that_they_say) {
  const std::string page = save("page.ppm", flat_page(160, 120));
  const std::string inks = save("constant.csc2", constant_inks(4));
  const change halftones[] = {[](print_options&) {}, [](print_options& o) { o.width16 = true; },
                              [](print_options& o) {
                                o.cells = {4, 2};
                              },
                              [](print_options& o) { o.halftone = "dither"; },
                              [](print_options& o) { o.halftone = "dither", o.levels = 200, o.width16 = true; }};
  const struct {
    std::vector<std::string> curves;
    double share;  // of the four planes
  } cases[] = {{{}, 1},
               {{"ink-limit:0.5"}, 0.5},
               {{"k=ink-limit:0.5", "c=ink-limit:.5", "m=ink-limit:.5", "y=ink-limit:.5"}, 0.5}};
  for (const change& halftone : halftones) {
    for (const auto& c : cases) {
      const printed result = print(page, [&](print_options& o) {
        o.csc2 = inks;
        o.plane_curves = c.curves;
        halftone(o);
      });
      ASSERT_EQ(result.coverage.size(), 4u);
      for (unsigned p = 0; p < 4; ++p) EXPECT_NEAR(result.coverage[p], c.share * (p + 1) / 8, 0.01) << p;
    }
  }
  // One ink is what light is missing, and a curve of gamma 2 makes level 1/2 its root.
  const printed lighter = print(page, [](print_options& o) { o.inks = 1, o.curves = {"gamma:2"}; });
  EXPECT_NEAR(lighter.coverage.at(0), 1 - kit::srgb_to_linear(std::sqrt(128 / 255.0)), 0.01);
}

TEST_F(options, split_light_inks_off_cyan_and_magenta) {
  const std::string page = save("page.ppm", flat_page(160, 120)), inks = save("constant.csc2", constant_inks(4));
  const printed result = print(page, [&](print_options& o) { o.csc2 = inks, o.split = true; });
  ASSERT_EQ(result.coverage.size(), 6u);
  const kit::ink_pair cyan = kit::split_cyan(2 / 8.0), magenta = kit::split_magenta(3 / 8.0);
  const double expected[] = {1 / 8.0, cyan.full, magenta.full, 4 / 8.0, cyan.light, magenta.light};
  for (unsigned p = 0; p < 6; ++p) EXPECT_NEAR(result.coverage[p], expected[p], 0.01) << p;
}

TEST_F(options, make_cells_of_dots) {
  const std::string page = busy_page();
  for (const unsigned x : {1u, 2u, 4u}) {
    for (unsigned y = 1; y <= 4; ++y) {
      print(page, [&](print_options& o) { o.cells = {x, y}, o.inks = x + y == 4 ? 1 : 4; });
      const std::string header = "P4\n" + std::to_string(97 * x) + " " + std::to_string(400 * y) + "\n";
      const std::string plane = load(dir_ / "out" / "k.pbm");
      EXPECT_EQ(plane.substr(0, header.size()), header);
      EXPECT_EQ(plane.size(), header.size() + (97 * x + 7) / 8 * (400 * y));
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
  const printed result = print(page, [&](print_options& o) {
    o.csc2 = save("constant.csc2", constant_inks(4));
    o.edpr = save("mixed.edpr", mixed.encode());
  });
  ASSERT_EQ(result.coverage.size(), 4u);
  for (unsigned p = 0; p < 4; ++p) EXPECT_NEAR(result.coverage[p], (p + 1) / 8.0, 0.01) << p;
  EXPECT_EQ(load(path("out/k.pbm")).substr(0, 11), "P4\n320 360\n");
  EXPECT_EQ(load(path("out/c.pbm")).substr(0, 11), "P4\n640 120\n");
  EXPECT_EQ(load(path("out/y.pbm")).substr(0, 11), "P4\n160 120\n");
}

// The noise of many levels must not go on setting dots where nothing is left to print.
TEST_F(options, leave_the_paper_bare_below_a_tone) {
  std::string tone = flat_page(160, 120);
  std::fill(tone.end() - 3 * 160 * 90, tone.end(), '\xFF');
  const std::string page = save("page.ppm", tone);
  const change halftones[] = {[](print_options& o) { o.levels = 2; }, [](print_options& o) { o.cells = {4, 4}; }};
  for (const change& halftone : halftones) {
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
    for (const bool width16 : {false, true}) {
      const printed result = print(save("page.pam", page), [&](print_options& o) { o.width16 = width16; });
      ASSERT_EQ(result.coverage.size(), 4u);
      const double expected[] = {0x80, 0x20, 0x40, 0x60};  // K, C, M, Y
      for (unsigned p = 0; p < 4; ++p) EXPECT_NEAR(result.coverage[p], expected[p] / 255, 0.01) << bytes << width16;
    }
  }
}

TEST_F(options, are_refused_where_they_make_no_sense) {
  const struct {
    change set;
    std::string said;
  } cases[] = {
      {[](print_options& o) {
         o.balance2 = {1, 1}, o.lift = 1;
       },
       "belongs to the second pre-processor"},
      {[](print_options& o) { o.split = true, o.inks = 4; }, "--split makes six inks"},
      {[](print_options& o) { o.matrix = "screens", o.filter = "fan"; }, "--filter belongs to error diffusion"},
      {[](print_options& o) {
         o.halftone = "dither", o.cells = {2, 2};
       },
       "--cells belong to error diffusion"},
      {[](print_options& o) { o.halftone = "ed", o.matrix = "screens"; }, "--matrix belongs to the dither"},
      {[](print_options& o) { o.levels = 17; }, "has 2 to 16"},
      {[](print_options& o) {
         o.cells = {2, 2}, o.levels = 6;
       },
       "a cell has 2 to 5"},
      {[](print_options& o) { o.curves = {"gamma:0"}; }, "curve gamma:0: expected a number from 0.1 to 10"},
      {[](print_options& o) { o.curves = {"points:0/0,0/50"}; }, "in rising order of IN"},
      {[](print_options& o) {
         o.curves = {"gamma:2", "s:1"};
       },
       "s:1: takes the place of gamma:2"},
      {[](print_options& o) { o.plane_curves = {"lm=gamma:2"}; }, "belongs to plane lm, which a print in 4 inks"},
      {[](print_options& o) { o.split = true, o.plane_curves = {"gamma:2"}; }, "takes the place of the kit's split"},
  };
  const std::string page = save("page.ppm", flat_page(8, 8));
  for (const auto& c : cases) {
    const std::string said = complaint([&] { print(page, c.set); });
    EXPECT_NE(said.find(c.said), std::string::npos) << said << "\nexpected: " << c.said;
  }
}

}  // namespace
