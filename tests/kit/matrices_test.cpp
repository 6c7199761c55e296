// Threshold matrices: the dots of one plane, and how planes meet.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "kit/blue_noise.h"
#include "kit/plane_overlap.h"
#include "kit/presets.h"
#include "kit/screens.h"

namespace {

using namespace vrk::kit;

TEST(matrices, ranks_are_a_permutation) {
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

TEST(matrices, inks_meet_as_by_chance) {
  const std::array tones{0.0, 0.01, 0.1, 0.3, 0.5, 0.9};
  for (const std::string_view name : matrix_names) {
    if (name == "blue-noise") continue;
    const matrix_set set = plane_matrices(name);
    const auto [least, most] = overlap_of(set, set.size(), tones);
    EXPECT_GT(least, 0.97) << name;
    EXPECT_LT(most, 1.03) << name;
  }
  const threshold_matrix& noise = blue_noise();  // what the measure says of planes that do not
  EXPECT_DOUBLE_EQ(overlap(noise, 0.25, noise, 0.25), 4);
  EXPECT_LT(overlap(noise, 0.1, shifted(noise, 1, 0), 0.1), 0.1);
}

TEST(matrices, blue_noise_keeps_its_dots_apart) {
  const threshold_matrix matrix = blue_noise();
  const unsigned size = matrix.width;
  const auto on = [&](unsigned x, unsigned y) {  // a tenth of the pixels
    return matrix.ranks[y % size * size + x % size] < size * size / 10;
  };
  for (unsigned x = 0; x < size; ++x) {
    for (unsigned y = 0; y < size; ++y) {
      const bool neighbour = on(x + 1, y) || on(x, y + 1) || on(x + 1, y + 1) || on(x + size - 1, y + 1);
      EXPECT_FALSE(on(x, y) && neighbour) << x << ", " << y;
    }
  }
}

TEST(matrices, screens_have_the_angle_and_ruling_asked_for) {
  for (const double lpi : {45.0, 106.0, 150.0}) {
    const auto asked = usual_rulings(lpi);
    const std::vector<screen> screens = nearest_screens(asked, spot_shape::round, 600, 600);
    for (std::size_t p = 0; p < screens.size(); ++p) {
      const ruling is = ruling_of(screens[p], 600, 600);
      EXPECT_NEAR(is.lpi, lpi, 0.01 * lpi);
      EXPECT_NEAR(remainder(is.angle - asked[p].angle, 180), 0, 0.5) << lpi;
    }
  }
}

TEST(matrices, screens_of_150_lpi_at_600_dpi_have_200_tones) {
  for (const spot_shape spot : {spot_shape::round, spot_shape::ellipse, spot_shape::line}) {
    for (const screen& of : nearest_screens(usual_rulings(150), spot, 600, 600)) {
      EXPECT_GE(screen_matrix(of).ranks.size() / 4, 200u);  // bytes take a quarter
    }
  }
}

TEST(matrices, screens_of_nearly_one_ruling_beat_slowly) {
  const screen upright{40, {10, 0}, {0, 10}}, wider{39, {9, 0}, {0, 9}}, turned{41, {7, -7}, {7, 7}};
  const threshold_matrix of_upright = screen_matrix(upright);
  const beat slow = strongest_beat(upright, of_upright, wider, screen_matrix(wider));
  EXPECT_NEAR(slow.frequency.cycles(), 1 / 4.0 - 9 / 39.0, 1e-9);
  const beat fast = strongest_beat(upright, of_upright, turned, screen_matrix(turned));
  EXPECT_LT(fast.amplitude, slow.amplitude / 2);
}

}  // namespace
