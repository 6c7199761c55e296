#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>

#include "kit/color_grids.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dot_patterns.h"
#include "kit/ed_tables.h"
#include "kit/error_filters.h"
#include "kit/ink_model.h"
#include "kit/level_sets.h"
#include "kit/modulation.h"
#include "kit/presets.h"
#include "kit/read_tables.h"
#include "kit/separation.h"
#include "kit/srgb.h"
#include "kit/tone_curves.h"

namespace {

using namespace vrk::kit;

TEST(kit, delta_streams_take_the_shortest_codes) {
  const auto stream = [](grid_encoding encoding, unsigned shift, std::vector<std::uint16_t> samples) {
    for (std::uint16_t& s : samples) s = std::uint16_t(s << shift);
    const bytes table = color_table{.encoding = encoding, .grid = {1, 1, std::move(samples)}}.encode();
    return bytes(table.begin() + 12 + 6, table.end());  // behind the header and axes of one point
  };
  EXPECT_EQ(stream(grid_encoding::delta8, 8, {1, 1, 1, 1}), (bytes{1, 0, 0})) << "17 bits";
  EXPECT_EQ(stream(grid_encoding::delta8, 8, {100, 100, 90, 120, 50}), (bytes{0x64, 0x1D, 0x31, 0x1A, 0b00110'000}));
  EXPECT_EQ(stream(grid_encoding::delta10, 6, {400, 400, 380, 600, 100}), (bytes{0x64, 0x1B, 0x40, 0xC9, 0x05, 0xF4}));
}

TEST(kit, tables_are_read_back_as_they_were_written) {
  const bytes lines = ed_parameters(4, 3, fine_noise_for(3)).encode(), cells = cell_parameters(6, 2, 3, 5).encode(),
              spread = ed_distribution().encode(), screens = dither_parameters(6, 4, "screens").encode(),
              curves = split_curves().encode(), inks = ink_table(6, 2).encode();
  EXPECT_EQ(read_edpr(lines).encode(), lines);
  EXPECT_EQ(read_edpr(cells).encode(), cells);
  EXPECT_EQ(read_edtb(spread).encode(), spread);
  EXPECT_EQ(read_dither_table(screens).encode(), screens);
  EXPECT_EQ(read_curve_image(curves, 6).encode(), curves);
  const bytes header = read_color_table_header(inks).encode();
  EXPECT_EQ(header, bytes(inks.begin(), inks.begin() + 12 + 6 * 2));

  const bytes both = blob{.class_code = 'C', .entries = {{"HN", inks}, {"HPP", curves}}}.encode();
  blob read = read_blob_directory(both);
  for (blob_entry& entry : read.entries) entry.data = data_of(entry, both);
  EXPECT_EQ(read.encode(), both);
}

TEST(kit, rows_of_a_distribution_table_add_up_to_their_error) {
  for (const error_filter& filter : error_filters) {
    const auto shares_at = [&](int size) -> const std::array<int, 5>* {  // null between two entries of the list
      if (filter.larger.empty() || size == 0) return &filter.shares;
      const auto at =
          std::find_if(filter.larger.begin(), filter.larger.end(), [&](auto& l) { return size <= l.error; });
      if (at == filter.larger.end()) return &filter.larger.back().shares;
      return at->error == size ? &at->shares : nullptr;
    };
    for (const unsigned levels : {2u, 4u}) {
      const edtb_table table = distribution_table(filter, levels);
      ASSERT_EQ(table.rows.size(), 511u);
      for (int e = -255; e <= 255; ++e) {
        const edtb_row& row = table.rows[std::size_t(e + 255)];
        EXPECT_EQ(std::accumulate(row.begin(), row.end(), 0), filter.lossy ? 0 : e) << filter.name;
        const std::array<int, 5>* const shares = shares_at(std::abs(e) * int(levels - 1));
        if (shares == nullptr) continue;
        const int sum = std::accumulate(shares->begin(), shares->end(), 0);
        EXPECT_EQ(filter.lossy, sum != filter.divisor) << filter.name;
        for (std::size_t i = 0; i < 5; ++i) {  // within one of the exact share
          EXPECT_LT(std::abs(row[i] * filter.divisor - e * (*shares)[i]), filter.divisor) << filter.name << ' ' << e;
        }
      }
    }
  }
}

TEST(kit, levels_spread_evenly_from_0_to_full_scale) {
  EXPECT_EQ(even_levels(3, 255), (std::vector<std::uint16_t>{0, 128, 255}));
  EXPECT_EQ(even_levels(4, 255), (std::vector<std::uint16_t>{0, 85, 170, 255}));
  EXPECT_EQ(halfway_thresholds(even_levels(4)), (std::vector<std::uint16_t>{171, 512, 853}));
  for (const auto& [levels, bits] : {std::pair{2u, 1u}, {3u, 2u}, {16u, 4u}, {17u, 8u}}) {
    EXPECT_EQ(bits_for_levels(levels), bits);
  }
}

TEST(kit, modulation_is_symmetric_and_differs_between_planes) {
  for (const int strength : {1, 4}) {
    const modulation noise = fine_noise(64, strength);
    for (const std::vector<std::int8_t>& plane : noise.planes) {
      EXPECT_EQ(std::accumulate(plane.begin(), plane.end(), 0), 0);
      EXPECT_EQ(*std::max_element(plane.begin(), plane.end()), 64);
      EXPECT_NEAR(double(std::count(plane.begin(), plane.end(), 64)) / double(plane.size()), (1 - 1.0 / strength) / 2,
                  0.01);
    }
    EXPECT_NE(noise.planes[0], noise.planes[1]);
  }
}

TEST(kit, inks_print_what_they_can_as_it_is) {
  const axis_positions axis = even_axis(9);
  std::vector<std::array<unsigned, 3>> points{{7, 6, 5}, {4, 5, 6}, {5, 3, 3}, {3, 4, 3}};  // mild colours
  for (unsigned gray = 0; gray < 9; ++gray) points.push_back({gray, gray, gray});
  for (const unsigned inks : {4u, 6u}) {
    std::vector<std::vector<double>> coverage;  // of every point
    for (const std::uint16_t sample : ink_grid(inks, 9).samples) {
      if (coverage.empty() || coverage.back().size() == inks) coverage.emplace_back();
      coverage.back().push_back(sample / 65535.0);
    }
    for (const auto& [i, j, k] : points) {
      const linear_rgb print = print_color(coverage[(i * 9 + j) * 9 + k]);
      for (const auto& [light, at] : {std::pair{print[0], i}, {print[1], j}, {print[2], k}}) {
        const double wanted = darkest_neutral + (1 - darkest_neutral) * srgb_to_linear(axis[at] / 65535.0);
        EXPECT_NEAR(255 * linear_to_srgb(light), 255 * linear_to_srgb(wanted), i == j && j == k ? 0.025 : 0.1)
            << inks << " inks, " << i << j << k;
      }
    }
    for (const std::vector<double>& point : coverage) {
      const double sum = std::accumulate(point.begin(), point.end(), 0.0),
                   limit = inks == 4 ? ink_limit : 1.1 * ink_limit;
      EXPECT_LE(sum, &point == &coverage.back() ? 0 : limit + 1e-3) << inks << " inks; none on white";
    }
  }
}

TEST(kit, a_saturation_of_1_is_the_identity_grid) {
  const color_grid same = matrix_grid(saturation_matrix(1), 9), identity = identity_grid(9);
  for (std::size_t i = 0; i < same.samples.size(); ++i) ASSERT_NEAR(same.samples[i], identity.samples[i], 1);
  const color_grid gray = matrix_grid(saturation_matrix(0), 9);
  for (std::size_t i = 0; i < gray.samples.size(); i += 3) {
    ASSERT_TRUE(gray.samples[i] == gray.samples[i + 1] && gray.samples[i] == gray.samples[i + 2]);
  }
}

TEST(kit, tone_curves_keep_their_ends_and_meet_their_points) {
  for (const curve& c : {identity_curve(), gamma_curve(2.2), s_curve(0.7), s_curve(-0.7), dot_gain_compensation(0),
                         dot_gain_compensation(0.2)}) {
    EXPECT_EQ(c.front(), 0);
    EXPECT_EQ(c.back(), 65535);
    EXPECT_TRUE(std::is_sorted(c.begin(), c.end()));
  }
  EXPECT_EQ(ink_limiting(0.5)[341], std::lround(0.5 * 65535 / 3));

  const double asked = dot_gain_compensation(0.2)[341] / 65535.0;  // what gains dots to one third
  EXPECT_NEAR(asked + 4 * 0.2 * asked * (1 - asked), 341 / 1023.0, 1e-4);

  const control_point points[] = {{0.1, 0}, {0.3, 0.6}, {0.5, 0.2}, {1, 0.2}};
  const curve through = curve_through(points);
  for (const control_point& p : points) EXPECT_NEAR(through[std::size_t(p.in * 1023)], p.out * 65535, 200) << p.in;
  EXPECT_EQ(through[50], 0);
  EXPECT_EQ(*std::max_element(through.begin(), through.end()), std::lround(0.6 * 65535));
  EXPECT_EQ(*std::min_element(through.begin() + 307, through.end()), std::lround(0.2 * 65535));

  const curve twice = chained(gamma_curve(2), gamma_curve(0.5));
  for (std::size_t i = 0; i < twice.size(); ++i) ASSERT_NEAR(twice[i], identity_curve()[i], 40) << i;
}

TEST(kit, split_inks_print_what_the_full_ink_would) {
  const curve_image image = split_curves();
  const auto absorbed = [](double coverage, double light) { return 1 - coverage * (1 - light); };
  for (std::size_t i = 0; i < 1024; ++i) {
    const double x = double(i) / 1023, full = image.curves[0][i] / 65535.0, light = image.curves[1][i] / 65535.0;
    const double red_left = absorbed(full, ink_colors[1][0]) * absorbed(light, ink_colors[4][0]);
    ASSERT_NEAR(red_left, absorbed(x, ink_colors[1][0]), 2e-5) << i;
  }
  EXPECT_TRUE(std::is_sorted(image.curves[0].begin(), image.curves[0].end()));
  EXPECT_EQ(image.curves[1].back(), 0);
}

TEST(kit, inks_to_split_print_what_four_inks_would) {
  for (const linear_rgb color : {linear_rgb{0.6, 0.5, 0.5}, {0.2, 0.3, 0.4}, {0.1, 0.05, 0.1}}) {
    const ink_coverage four = separate_to_split(color);
    const ink_pair cyan = split_cyan(four[1]), magenta = split_magenta(four[2]);
    const linear_rgb six =
        print_color(std::array{four[0], cyan.full, magenta.full, four[3], cyan.light, magenta.light});
    const linear_rgb wanted = print_color(separate(color, false));
    for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(six[c], wanted[c], 1e-4) << color[0] << " channel " << c;
  }
}

TEST(kit, dots_of_a_cell_grow_from_its_centre) {
  EXPECT_EQ(centred_dots(4, 4, 17).cells[4], 0b0000'0110'0110'0000);
  EXPECT_EQ(centred_dots(1, 4, 2).cells, (std::vector<std::uint16_t>{0, 0x8888}));
  EXPECT_EQ(centred_dots(2, 2, 3).level_values, (std::vector<std::uint16_t>{0, 512, 1023}));
  for (const unsigned scale_x : {1u, 2u, 4u}) {
    for (const unsigned scale_y : {1u, 2u, 3u, 4u}) {
      const unsigned dots = scale_x * scale_y;
      const dot_cells grown = centred_dots(scale_x, scale_y, dots + 1);
      for (unsigned level = 1; level <= dots; ++level) {
        EXPECT_EQ(unsigned(std::popcount(grown.cells[level])), level);
        EXPECT_EQ(grown.cells[level - 1] & ~grown.cells[level], 0);
      }
    }
  }
}

// Colour tables count on planes that share as many dots as chance has it.
TEST(kit, dots_of_two_planes_meet_by_chance) {
  const edpr_table table = cell_parameters(6, 4, 2, 9);
  const auto dots = [&](std::size_t plane, std::size_t level) { return table.planes[plane].patterns[level]; };
  for (std::size_t plane = 0; plane < 6; ++plane) {
    for (std::size_t other = 0; other < plane; ++other) {
      for (std::size_t level = 1; level < 8; ++level) {
        double shared = 0;
        for (std::size_t pixel = 0; pixel < dots(plane, level).size(); ++pixel) {
          ASSERT_EQ(unsigned(std::popcount(dots(plane, level)[pixel])), level);
          shared += std::popcount(unsigned(dots(plane, level)[pixel] & dots(other, level)[pixel]));
        }
        const double chance = double(level * level) / 8;
        EXPECT_NEAR(shared / double(dots(plane, level).size()), chance, 0.4) << plane << other << ", level " << level;
      }
    }
  }
}

// A window as large as a cell that lies across four of them has about as many dots as they have.
TEST(kit, dots_of_neighbouring_cells_keep_apart) {
  const edpr_table table = cell_parameters(4, 4, 4, 17);
  const unsigned width = table.pattern_width, height = table.pattern_height;
  for (std::size_t plane = 0; plane < 4; ++plane) {
    for (unsigned level = 1; level < 16; ++level) {
      const std::vector<std::uint16_t>& cells = table.planes[plane].patterns[level];
      double squares = 0;
      for (unsigned y = 0; y < height; ++y) {
        for (unsigned x = 0; x < width; ++x) {
          const auto quarter = [&](unsigned right, unsigned down, unsigned dots) {
            return std::popcount(unsigned(cells[(y + down) % height * width + (x + right) % width] & dots));
          };
          const int dots =
              quarter(0, 0, 0x0033) + quarter(1, 0, 0x00CC) + quarter(0, 1, 0x3300) + quarter(1, 1, 0xCC00);
          squares += (dots - int(level)) * (dots - int(level));
        }
      }
      EXPECT_LT(squares / (width * height), 1.0) << "plane " << plane << ", level " << level;
    }
  }
}

}  // namespace
