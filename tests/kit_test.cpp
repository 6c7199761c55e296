#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <numeric>

#include "kit/blob.h"
#include "kit/color_grids.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dither_table.h"
#include "kit/dot_patterns.h"
#include "kit/ed_tables.h"
#include "kit/error_filters.h"
#include "kit/ink_model.h"
#include "kit/level_sets.h"
#include "kit/modulation.h"
#include "kit/planes.h"
#include "kit/presets.h"
#include "kit/separation.h"
#include "kit/threshold_matrices.h"
#include "kit/tone_curves.h"

namespace {

using namespace vrk::kit;

// Samples of `bits` bits of one plane, on the grid's 16-bit scale.
color_grid plane_grid(unsigned bits, std::vector<std::uint16_t> samples) {
  for (std::uint16_t& s : samples) s = std::uint16_t(s << (16 - bits));
  return {.points = 1, .channels = 1, .samples = std::move(samples)};
}

bytes grid_bytes(const color_table& table) {
  const bytes all = table.encode();
  return bytes(all.begin() + 12 + 6 * table.grid.points, all.end());
}

TEST(kit, delta8_stream_takes_the_shortest_codes) {
  const color_table table{.encoding = grid_encoding::delta8, .grid = plane_grid(8, {100, 100, 90, 120, 50})};
  EXPECT_EQ(grid_bytes(table), (bytes{0x64, 0x1D, 0x31, 0x1A, 0b00110'000}));
}

TEST(kit, delta10_stream_takes_the_shortest_codes) {
  const color_table table{.encoding = grid_encoding::delta10, .grid = plane_grid(10, {400, 400, 380, 600, 100})};
  EXPECT_EQ(grid_bytes(table), (bytes{0x64, 0x1B, 0x40, 0xC9, 0x05, 0xF4}));
}

color_grid counting_grid(unsigned points, unsigned channels) {
  color_grid grid{.points = points, .channels = channels, .samples = {}};
  for (unsigned i = 0; i < points * points * points * channels; ++i) grid.samples.push_back(std::uint16_t(i << 8));
  return grid;
}

TEST(kit, packed_grids_carry_their_whole_tail) {
  struct {
    unsigned channels;
    grid_encoding encoding;
    std::size_t size;
  } const cases[] = {
      {3, grid_encoding::packed12, 117 + 6}, {3, grid_encoding::packed10, 90 + 12},
      {4, grid_encoding::packed12, 27 * 6},  {4, grid_encoding::packed10, 27 * 5},
      {6, grid_encoding::packed12, 27 * 9},  {6, grid_encoding::packed10, 13 * 15 + 8},
  };
  for (const auto& c : cases) {
    const color_table table{.encoding = c.encoding, .grid = counting_grid(3, c.channels)};
    EXPECT_EQ(grid_bytes(table).size(), c.size) << c.channels << " channels, encoding " << int(c.encoding);
  }
}

TEST(kit, ink_grids_are_stored_in_table_order) {
  color_table table{.encoding = grid_encoding::raw8, .grid = {.points = 1, .channels = 4, .samples = {}}};
  table.grid.samples = {40 << 8, 10 << 8, 20 << 8, 30 << 8};  // K, C, M, Y
  EXPECT_EQ(grid_bytes(table), (bytes{10, 20, 30, 40}));
  table.grid.channels = 6;
  table.grid.samples = {6 << 8, 1 << 8, 3 << 8, 5 << 8, 2 << 8, 4 << 8};  // K, C, M, Y, fifth, sixth
  EXPECT_EQ(grid_bytes(table), (bytes{1, 2, 3, 4, 5, 6}));
}

TEST(kit, blob_directory_points_at_the_data) {
  const bytes image = blob{.entries = {{.tag = "HT", .data = {1, 2, 3}}, {.tag = "HC  ", .data = {4}}}}.encode();
  ASSERT_EQ(image.size(), 40u + 2 * 12 + 4);
  EXPECT_EQ(image[31], 0x1A);
  EXPECT_EQ(image[33], 2);
  EXPECT_EQ((bytes{image.begin() + 40, image.begin() + 64}),
            (bytes{'H', 'T', ' ', ' ', 0, 0, 0, 64, 0, 0, 0, 3, 'H', 'C', ' ', ' ', 0, 0, 0, 67, 0, 0, 0, 1}));
}

TEST(kit, rows_of_a_distribution_table_add_up_to_their_error) {
  for (const error_filter& filter : error_filters) {
    const int shares = std::accumulate(filter.shares.begin(), filter.shares.end(), 0);
    EXPECT_EQ(filter.lossy, shares != filter.divisor) << filter.name;
    const edtb_table table = distribution_table(filter);
    ASSERT_EQ(table.rows.size(), 511u);
    for (int e = -255; e <= 255; ++e) {
      const edtb_row& row = table.rows[std::size_t(e + 255)];
      EXPECT_EQ(std::accumulate(row.begin(), row.end(), 0), filter.lossy ? 0 : e) << filter.name;
      for (std::size_t i = 0; i < 5; ++i) {  // within one of the exact share
        EXPECT_LT(std::abs(row[i] * filter.divisor - e * filter.shares[i]), filter.divisor) << filter.name << ' ' << e;
      }
    }
  }
}

TEST(kit, levels_spread_evenly_from_0_to_full_scale) {
  EXPECT_EQ(even_levels(3, 255), (std::vector<std::uint16_t>{0, 128, 255}));
  EXPECT_EQ(even_levels(4, 255), (std::vector<std::uint16_t>{0, 85, 170, 255}));
  EXPECT_EQ(halfway_thresholds(even_levels(4)), (std::vector<std::uint16_t>{171, 512, 853}));
  EXPECT_EQ(bits_for_levels(2), 1u);
  EXPECT_EQ(bits_for_levels(3), 2u);
  EXPECT_EQ(bits_for_levels(16), 4u);
  EXPECT_EQ(bits_for_levels(17), 8u);
}

TEST(kit, ranks_of_a_threshold_matrix_are_a_permutation) {
  for (const std::string_view name : matrix_names) {
    for (const threshold_matrix& matrix : plane_matrices(name)) {
      ASSERT_LE(std::max(matrix.width, matrix.height), 255u) << name;
      std::vector<std::uint16_t> ranks = matrix.ranks, all(matrix.width * matrix.height);
      std::sort(ranks.begin(), ranks.end());
      std::iota(all.begin(), all.end(), std::uint16_t{0});
      EXPECT_EQ(ranks, all) << name;
    }
  }
}

// The least distance, around the edges, between two of the pixels that a tenth of the ranks turn on.
int closest_pair(const threshold_matrix& matrix) {
  const int size = int(matrix.width);
  std::vector<int> on;
  for (int at = 0; at < size * size; ++at) {
    if (matrix.ranks[std::size_t(at)] < size * size / 10) on.push_back(at);
  }
  int closest = size * size;
  for (const int a : on) {
    for (const int b : on) {
      const int dx = std::abs(a % size - b % size), dy = std::abs(a / size - b / size);
      const int x = std::min(dx, size - dx), y = std::min(dy, size - dy);
      if (a != b) closest = std::min(closest, x * x + y * y);
    }
  }
  return closest;
}

TEST(kit, blue_noise_keeps_its_dots_apart) { EXPECT_GE(closest_pair(blue_noise()), 4); }

TEST(kit, screens_have_their_angle) {
  const threshold_matrix matrix = clustered_dot(7, 2);
  ASSERT_EQ(matrix.width, 53u);
  const auto rank = [&](unsigned x, unsigned y) { return matrix.ranks[y % 53 * 53 + x % 53]; };
  for (unsigned dot = 0; dot < 53; ++dot) {  // one centre in every cell, reached by steps of (7, 2)
    EXPECT_LT(rank(7 * dot, 2 * dot), 53u);
  }
}

TEST(kit, modulation_is_symmetric_and_differs_between_planes) {
  const modulation fine = fine_noise(64);
  for (const std::vector<std::int8_t>& plane : fine.planes) {
    EXPECT_EQ(std::accumulate(plane.begin(), plane.end(), 0), 0);
    EXPECT_EQ(*std::max_element(plane.begin(), plane.end()), 64);
  }
  EXPECT_NE(fine.planes[0], fine.planes[1]);
}

// What the inks of a grid print at the point (i, j, k), on the sRGB scale 0 ... 255.
std::array<double, 3> printed(const color_grid& grid, unsigned i, unsigned j, unsigned k) {
  std::vector<double> coverage;
  const std::size_t point = ((i * grid.points + j) * grid.points + k) * grid.channels;
  for (std::size_t c = 0; c < grid.channels; ++c) coverage.push_back(grid.samples[point + c] / 65535.0);
  linear_rgb color = print_color(coverage);
  for (double& light : color) light = 255 * linear_to_srgb(light);
  return color;
}

TEST(kit, grays_print_neutral_and_white_prints_nothing) {
  for (const unsigned inks : {4u, 6u}) {
    const color_grid grid = ink_grid(inks);
    double darker = 256;
    for (unsigned i = grid.points; i-- > 0;) {
      const auto [r, g, b] = printed(grid, i, i, i);
      EXPECT_NEAR(r, g, 0.05) << inks << " inks, gray " << i;
      EXPECT_NEAR(b, g, 0.05) << inks << " inks, gray " << i;
      EXPECT_LT(g, darker);
      darker = g;
    }
    EXPECT_EQ(std::vector<std::uint16_t>(grid.samples.end() - inks, grid.samples.end()),
              std::vector<std::uint16_t>(inks, 0));
  }
}

TEST(kit, colors_that_the_inks_can_print_come_out_as_they_are) {
  const axis_positions axis = even_axis(9);
  for (const unsigned inks : {4u, 6u}) {
    const color_grid grid = ink_grid(inks, 9);
    for (const auto& [i, j, k] : {std::array{7u, 6u, 5u}, {4u, 5u, 6u}, {5u, 3u, 3u}, {3u, 4u, 3u}}) {  // mild colours
      const auto [r, g, b] = printed(grid, i, j, k);
      const auto raised = [](unsigned position) {  // image black is raised to the darkest print
        return 255 * linear_to_srgb(darkest_neutral + (1 - darkest_neutral) * srgb_to_linear(position / 65535.0));
      };
      EXPECT_NEAR(r, raised(axis[i]), 0.1) << inks << " inks, " << i << j << k;
      EXPECT_NEAR(g, raised(axis[j]), 0.1) << inks << " inks, " << i << j << k;
      EXPECT_NEAR(b, raised(axis[k]), 0.1) << inks << " inks, " << i << j << k;
    }
  }
}

TEST(kit, no_color_takes_more_ink_than_the_paper_holds) {
  for (const unsigned inks : {4u, 6u}) {
    const color_grid grid = ink_grid(inks, 9);
    const double limit = inks == 4 ? ink_limit : 1.1 * ink_limit;
    for (std::size_t point = 0; point < grid.samples.size(); point += inks) {
      const auto first = grid.samples.begin() + std::ptrdiff_t(point);
      ASSERT_LE(std::accumulate(first, first + inks, 0.0) / 65535, limit + 1e-3)
          << inks << " inks, point " << point / inks;
    }
  }
}

TEST(kit, a_saturation_of_1_is_the_identity_grid) {
  const color_grid same = matrix_grid(saturation_matrix(1), 9), identity = identity_grid(9);
  for (std::size_t i = 0; i < same.samples.size(); ++i) ASSERT_NEAR(same.samples[i], identity.samples[i], 1);
  const color_grid gray = matrix_grid(saturation_matrix(0), 9);
  for (std::size_t i = 0; i < gray.samples.size(); i += 3) {
    ASSERT_EQ(gray.samples[i], gray.samples[i + 1]);
    ASSERT_EQ(gray.samples[i], gray.samples[i + 2]);
  }
}

TEST(kit, tone_curves_keep_their_ends_and_meet_their_points) {
  for (const curve& c : {identity_curve(), gamma_curve(2.2), s_curve(0.7), s_curve(-0.7), dot_gain_compensation(0),
                         dot_gain_compensation(0.2)}) {
    EXPECT_EQ(c.front(), 0);
    EXPECT_EQ(c.back(), 65535);
    EXPECT_TRUE(std::is_sorted(c.begin(), c.end()));
  }
  EXPECT_EQ(ink_limiting(0.5).back(), 32768);

  const double asked = dot_gain_compensation(0.2)[341] / 65535.0;  // what gains dots to one third
  EXPECT_NEAR(asked + 4 * 0.2 * asked * (1 - asked), 341 / 1023.0, 1e-4);

  const control_point points[] = {{0.1, 0}, {0.3, 0.6}, {0.5, 0.6}, {1, 0.2}};
  const curve through = curve_through(points);
  for (const control_point& p : points) EXPECT_NEAR(through[std::size_t(p.in * 1023)], p.out * 65535, 200) << p.in;
  EXPECT_EQ(through[50], 0);
  EXPECT_TRUE(std::is_sorted(through.begin(), through.begin() + 307));
  EXPECT_EQ(*std::max_element(through.begin(), through.end()), std::lround(0.6 * 65535));

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
      for (unsigned level = 0; level <= dots; ++level) {
        EXPECT_EQ(unsigned(std::popcount(grown.cells[level])), level);
        EXPECT_EQ(grown.cells[level] & ~grown.cells[dots], 0);
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

}  // namespace
