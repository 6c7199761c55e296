// The measures of the quality report, on patterns whose spectra and tones are known.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <set>

#include "tools/review/report_measures.h"

namespace vrk::tool {
namespace {

constexpr unsigned side = 512;

template <class Ink>
ink_plane painted(Ink ink) {
  ink_plane p{side, side, {}};
  for (unsigned y = 0; y < side; ++y) {
    for (unsigned x = 0; x < side; ++x) p.ink.push_back(float(ink(x, y)));
  }
  return p;
}

std::vector<double> radial(const ink_plane& plane) { return radial_power(spectrum_of(plane)); }

TEST(report, spectrum_of_white_noise_is_flat) {
  std::minstd_rand random;
  const auto power = radial(painted([&](unsigned, unsigned) { return random() % 3 == 0 ? 1 : 0; }));
  for (std::size_t i = 4; i + 2 < power.size(); ++i) EXPECT_NEAR(power[i], 1, i < 12 ? 0.5 : 0.2) << i;
  EXPECT_NEAR(low_power(power, 1.0 / 3), 1, 0.1);
}

TEST(report, spectrum_of_a_sine_has_one_peak) {
  for (const auto& [fx, fy] : {std::pair{40, 0}, {0, 40}, {24, 32}, {32, -24}}) {  // 40 / 256 cycles per pixel
    const auto power = radial(painted([&, fx = fx, fy = fy](unsigned x, unsigned y) {
      return 0.5 + 0.4 * std::sin(2 * std::numbers::pi * (fx * double(x) + fy * double(y)) / spectrum_window);
    }));
    EXPECT_EQ(std::max_element(power.begin(), power.end()) - power.begin(), 40);
    for (std::size_t i = 0; i < power.size(); ++i) {
      EXPECT_LT(power[i], i + 3 < 40 || i > 43 ? power[40] / 1e4 : power[40] * 1.001) << i;
    }
    EXPECT_GT(hump(power, 0.5).power, 1);  // coarser than dots of half tone need be
  }
}

TEST(report, spectrum_of_a_flat_pattern_is_nothing) {
  for (const double p : radial(painted([](unsigned, unsigned) { return 0.25; }))) EXPECT_EQ(p, 0);
}

TEST(report, takes_the_tone_that_a_matrix_makes_worst) {
  const auto spectrum = [](unsigned tone) {
    const auto by = make_halftone({"bayer4", true}, 1, 2, false, side, ed_precision::samples16);
    return tone_spectrum{tone, tone / 255.0, radial(flat_patch(*by, side, side, tone, 16))};
  };
  choice_report report{};
  for (const unsigned tone : {96u, 75u, 128u}) report.spectra.push_back(spectrum(tone));  // 6, 4.7 and 8 of 16 cells
  EXPECT_EQ(report.coarsest().tone, 75U);
  EXPECT_LT(hump(report.spectra[0].power, report.spectra[0].share).power, 1e-3);
  EXPECT_GT(hump(report.coarsest().power, report.coarsest().share).power, 1);
}

// Full ink is the one step that no tone up to 254 reaches.
TEST(report, samples_of_either_width_reach_every_step_of_a_matrix) {
  for (const auto& [name, cells] : {std::pair{"bayer2", 4}, {"bayer4", 16}, {"bayer8", 64}}) {
    for (const ed_precision precision : {ed_precision::bits8, ed_precision::samples16}) {
      std::set<double> steps;
      for (unsigned tone = 1; tone <= 254; ++tone) {
        const auto by = make_halftone({name, true}, 1, 2, false, 16, precision);
        steps.insert(flat_patch(*by, 16, 16, tone, precision == ed_precision::samples16 ? 16 : 8).mean());
      }
      EXPECT_EQ(steps.size(), std::size_t(cells - 1)) << name;
    }
  }
}

}  // namespace
}  // namespace vrk::tool
