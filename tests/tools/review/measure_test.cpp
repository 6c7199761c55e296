// The measures of print quality, on planes for which they are known.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "kit/ink_model.h"
#include "tools/review/measure/overlay.h"
#include "tools/review/measure/spectrum.h"
#include "tools/review/measure/tints.h"
#include "tools/review/measure/visible_noise.h"

namespace vrk::tool {
namespace {

template <class Ink>
ink_plane painted(unsigned width, unsigned height, Ink ink) {
  ink_plane p{width, height, {}};
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) p.ink.push_back(float(ink(x, y)));
  }
  return p;
}

double wave(double frequency, double x) { return std::sin(2 * std::numbers::pi * frequency * x); }

TEST(measure, gaussians_leave_their_share_of_white_noise) {
  std::minstd_rand random;
  const ink_plane dots = painted(300, 201, [&](unsigned, unsigned) { return random() % 4 == 0 ? 1 : 0; });
  const visible_noise noise = measure_noise(dots, viewing{});
  // Of white noise with a deviation of root 3 / 4 a Gaussian leaves 1 / (2 root(pi) sigma).
  const double all = 100 * std::sqrt(3) / 4 / (2 * std::sqrt(std::numbers::pi));
  EXPECT_NEAR(noise.fine, all / 2, 0.05 * all / 2);
  EXPECT_NEAR(noise.coarse, all / 4, 0.1 * all / 4);
}

TEST(measure, eye_keeps_less_of_finer_waves_and_from_further_away) {
  for (const double distance : {20.0, 40.0}) {
    for (const double frequency : {1.0 / 64, 1.0 / 16}) {
      const ink_plane lines = painted(576, 128, [&](unsigned x, unsigned) { return 0.5 + 0.1 * wave(frequency, x); });
      const double degrees = frequency * 600 / 2.54 * distance * std::tan(std::numbers::pi / 180);
      const double kept = std::exp(-degrees / (0.525 * std::log(50) + 3.91));
      EXPECT_NEAR(measure_noise(lines, {distance, 600}).eye, 10 / std::sqrt(2) * kept, 0.03 * 10 * kept);
    }
  }
}

TEST(measure, tone_curve_is_no_noise) {
  const ink_plane ramp = painted(256, 256, [](unsigned x, unsigned) { return x / 255.0; });
  const auto bent = [](double ink) { return ink + 0.1 * ink * (1 - ink); };
  const ink_plane calibrated = painted(256, 256, [&](unsigned x, unsigned) { return bent(x / 255.0); });
  EXPECT_LT(measure_noise(calibrated, ramp, viewing{}).coarse, 0.1);
  const ink_plane stained =
      painted(256, 256, [&](unsigned x, unsigned y) { return bent(x / 255.0) + (y < 128) * 0.04; });
  EXPECT_NEAR(measure_noise(stained, ramp, viewing{}).coarse, 2, 0.15);
}

TEST(measure, even_colors_differ_as_cielab_says) {
  const ink_plane none = painted(96, 80, [](unsigned, unsigned) { return 0; });
  const ink_plane half = painted(96, 80, [](unsigned, unsigned) { return 0.5; });
  const std::vector<ink_plane> paper{none, none, none, none}, gray{half, none, none, none};
  const overlay_error error = measure_overlay(gray, paper, viewing{});
  const double light = (1 + kit::ink_colors[0][1]) / 2, lightness = 116 * std::cbrt(light) - 16;
  EXPECT_NEAR(error.lightness, 100 - lightness, 0.01);
  EXPECT_NEAR(error.delta_e, 100 - lightness, 0.01);
  EXPECT_NEAR(error.chroma, 0, 0.02);
}

TEST(measure, dots_on_dots_turn_the_color_and_dots_beside_dots_turn_it_back) {
  const ink_plane none = painted(128, 128, [](unsigned, unsigned) { return 0; });
  const ink_plane half = painted(128, 128, [](unsigned, unsigned) { return 0.5; });
  const ink_plane even = painted(128, 128, [](unsigned x, unsigned y) { return (x + y) % 2; });
  const ink_plane odd = painted(128, 128, [](unsigned x, unsigned y) { return (x + y + 1) % 2; });
  const std::vector<ink_plane> inks{none, half, half, half}, stacked{none, even, even, even},
      spread{none, even, even, odd};
  const overlay_error on = measure_overlay(stacked, inks, viewing{}), beside = measure_overlay(spread, inks, viewing{});
  EXPECT_GT(on.lightness, 3);  // paper shows through
  EXPECT_GT(std::hypot(beside.mean_a, beside.mean_b), 5);
  EXPECT_NEAR(beside.chroma, std::hypot(beside.mean_a, beside.mean_b), 0.2);  // even: no grain
}

TEST(measure, finds_the_direction_of_lines) {
  std::minstd_rand random;
  const auto grain = [&] { return random() % 2 == 0 ? 0.2 : -0.2; };
  const ink_plane noise = painted(1024, 1024, [&](unsigned, unsigned) { return 0.5 + grain(); });
  EXPECT_LT(strongest_direction(spectrum_of(noise)).ratio, 1.5);
  for (const auto& [degrees, fx, fy] : {std::tuple{0, 40, 0}, {90, 0, 40}, {45, 30, 30}, {135, 30, -30}}) {
    const ink_plane worms = painted(512, 512, [&, fx = fx, fy = fy](unsigned x, unsigned y) {
      return 0.5 + grain() + 0.1 * wave(1, (fx * double(x) + fy * double(y)) / spectrum_window);
    });
    const direction found = strongest_direction(spectrum_of(worms));
    EXPECT_GT(found.ratio, 5);
    EXPECT_EQ(found.degrees, degrees);
    EXPECT_NEAR(found.frequency, 40.0 / 256, 1.0 / 32);
  }
}

TEST(measure, rims_have_the_ink_that_lies_there) {
  const ink_plane tint = painted(100, 50, [](unsigned x, unsigned y) { return y < 6 || x >= 94 ? 0 : 0.05; });
  EXPECT_NEAR(measure_rim(tint, 0.05).lines, 0.5 * 0.94, 1e-6);
  EXPECT_NEAR(measure_rim(tint, 0.05).columns, 0.5 * 0.88, 1e-6);
}

TEST(measure, seam_is_a_tone_unlike_its_neighbours) {
  std::vector<double> noise(256);
  for (std::size_t t = 0; t < noise.size(); ++t) noise[t] = 1 + 0.001 * double(t);  // a slope is no seam
  EXPECT_NEAR(measure_seam(noise).ratio, 1, 0.01);
  noise[130] *= 1.5;
  EXPECT_EQ(measure_seam(noise).tone, 130U);
  EXPECT_NEAR(measure_seam(noise).ratio, 1.5, 0.02);
}

}  // namespace
}  // namespace vrk::tool
