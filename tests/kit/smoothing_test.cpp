#include "kit/smoothing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using vrk::kit::measured_point;

// Least squares by its definition: the largest of the smallest means of runs around a point.
TEST(smoothing, rising_points_are_the_isotonic_regression) {
  std::mt19937 random(3);
  for (unsigned round = 0; round < 200; ++round) {
    std::vector<measured_point> points;
    for (unsigned i = 0; i < 2 + round % 9; ++i) {
      points.push_back({i * 0.5, double(random() % 6), 1.0 + double(random() % 3)});
    }
    std::vector<double> expected;
    for (std::size_t i = 0; i < points.size(); ++i) {
      double highest = -1;
      for (std::size_t first = 0; first <= i; ++first) {
        double sum = 0, weight = 0, lowest = 100;
        for (std::size_t last = first; last < points.size(); ++last) {
          sum += points[last].value * points[last].weight;
          weight += points[last].weight;
          if (last >= i) lowest = std::min(lowest, sum / weight);
        }
        highest = std::max(highest, lowest);
      }
      if (expected.empty() || highest > expected.back() + 1e-9) expected.push_back(highest);
    }
    const std::vector<measured_point> rising = vrk::kit::rising_points(points);
    ASSERT_EQ(rising.size(), expected.size());
    for (std::size_t i = 0; i < rising.size(); ++i) EXPECT_NEAR(rising[i].value, expected[i], 1e-9);
    if (rising.size() < 2) continue;
    EXPECT_EQ(rising.front().at, points.front().at);
    EXPECT_EQ(rising.back().at, points.back().at);
  }
}

TEST(smoothing, noise_goes_and_shape_stays) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0, 0.4);
  std::vector<measured_point> clean, noisy;
  for (int i = 0; i <= 40; ++i) {
    const double at = i / 40.0;
    clean.push_back({at, 80 * std::pow(at, 0.7)});
    noisy.push_back({at, clean.back().value + noise(random)});
  }
  double before = 0, after = 0;
  const std::vector<double> kept = vrk::kit::smooth_values(clean), smooth = vrk::kit::smooth_values(noisy);
  for (std::size_t i = 0; i < clean.size(); ++i) {
    EXPECT_NEAR(kept[i], clean[i].value, 0.05);
    before += std::pow(noisy[i].value - clean[i].value, 2);
    after += std::pow(smooth[i] - clean[i].value, 2);
  }
  EXPECT_LT(after, 0.6 * before);
}

}  // namespace
