#include "tools/review/report_spectrum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <kissfft/kissfft.hh>
#include <numbers>
#include <numeric>

namespace vrk::tool {
namespace {

constexpr int side = int(spectrum_window), half = side / 2;

// The discrete Fourier transform of one window: of its rows, then of the columns of the result.
class window_transform {
 public:
  double& sample(int x, int y) { return samples_[std::size_t(y * side + x)]; }

  void run() {
    for (std::size_t y = 0; y < side; ++y) {
      std::complex<double>* const row = &rows_[y * frequencies];
      of_rows_.transform_real(&samples_[y * side], row);
      row[half] = row[0].imag();  // both ends are real and come in one number
      row[0] = row[0].real();
    }
    for (std::size_t x = 0; x < frequencies; ++x) {
      of_columns_.transform(&rows_[x], &columns_[x * side], 0, 1, frequencies);
    }
  }

  // Of the frequency x (0 ... half), y (0 ... side - 1) after `run`.
  double power(int x, int y) const { return std::norm(columns_[std::size_t(x * side + y)]); }

 private:
  static constexpr std::size_t frequencies = half + 1;  // of a row of real samples

  kissfft<double> of_rows_{half, false}, of_columns_{side, false};
  std::vector<double> samples_ = std::vector<double>(std::size_t{side} * side);
  std::vector<std::complex<double>> rows_ = std::vector<std::complex<double>>(side * frequencies);
  std::vector<std::complex<double>> columns_ = std::vector<std::complex<double>>(side * frequencies);
};

// Hann's window: with hard edges, strong frequencies would spread over weak ones.
std::array<double, side> hann() {
  std::array<double, side> weights{};
  for (int i = 0; i < side; ++i) weights[std::size_t(i)] = std::pow(std::sin(std::numbers::pi * (i + 0.5) / side), 2);
  return weights;
}

// Powers added up by distance from zero frequency.
struct rings {
  static constexpr std::size_t count = 182;  // the corner lies at half * sqrt(2), which rounds to 181
  std::vector<double> sum = std::vector<double>(count), weight = std::vector<double>(count);

  void add(const window_transform& transform) {
    for (int y = 0; y < side; ++y) {
      for (int x = 0; x <= half; ++x) {
        const auto ring = std::size_t(std::lround(std::hypot(x, y > half ? y - side : y)));
        const double times = x == 0 || x == half ? 1 : 2;  // frequencies of negative x mirror those of positive x
        sum[ring] += times * transform.power(x, y);
        weight[ring] += times;
      }
    }
  }
};

}  // namespace

std::vector<double> radial_power(const pattern& dots) {
  const double mean = dots.mean();
  const double variance = std::accumulate(dots.ink.begin(), dots.ink.end(), 0.0,
                                          [&](double sum, float ink) { return sum + (ink - mean) * (ink - mean); }) /
                          double(dots.ink.size());
  if (variance < 1e-9) return std::vector<double>(rings::count);

  const std::array<double, side> weights = hann();
  double energy = 0;  // of the window along one axis
  for (const double w : weights) energy += w * w;

  window_transform transform;
  rings powers;
  unsigned windows = 0;
  for (unsigned top = 0; top + side <= dots.height; top += half) {
    for (unsigned left = 0; left + side <= dots.width; left += half, ++windows) {
      for (int y = 0; y < side; ++y) {
        const float* const row = &dots.ink[(top + std::size_t(y)) * dots.width + left];
        for (int x = 0; x < side; ++x) {
          transform.sample(x, y) = (row[x] - mean) * weights[std::size_t(x)] * weights[std::size_t(y)];
        }
      }
      transform.run();
      powers.add(transform);
    }
  }
  // `weight` counts the frequencies of all windows, so that the mean needs no number of windows.
  for (std::size_t i = 0; i < rings::count; ++i) powers.sum[i] /= powers.weight[i] * energy * energy * variance;
  return powers.sum;
}

double principal_frequency(double share) { return std::clamp(std::sqrt(std::min(share, 1 - share)), 1.0 / 16, 0.5); }

double low_power(const std::vector<double>& power, double share) {
  const auto end = std::size_t(principal_frequency(share) / 4 * side);
  return std::accumulate(power.begin() + 2, power.begin() + std::ptrdiff_t(end) + 1, 0.0) / double(end - 1);
}

spectrum_peak hump(const std::vector<double>& power, double share) {
  const auto end = std::ptrdiff_t(principal_frequency(share) / 2 * side);
  const auto peak = std::max_element(power.begin() + 2, power.begin() + end + 1);
  return {*peak, double(peak - power.begin()) / side};
}

double decibels(double power) { return 10 * std::log10(std::max(power, 1e-6)); }

}  // namespace vrk::tool
