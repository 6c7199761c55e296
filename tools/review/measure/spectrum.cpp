#include "tools/review/measure/spectrum.h"

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

// Negative above half a window.
int signed_frequency(int y) { return y > half ? y - side : y; }

// How many frequencies of the whole spectrum one of the kept half stands for.
double times(int x) { return x == 0 || x == half ? 1 : 2; }

// A mean in the making.
struct weighted_mean {
  double sum = 0, weight = 0;

  void add(double value, double times) {
    sum += value * times;
    weight += times;
  }
  double value() const { return weight > 0 ? sum / weight : 0; }
};

constexpr std::size_t ring_count = 182;  // the corner lies at half * sqrt(2), which rounds to 181

}  // namespace

power_spectrum spectrum_of(const ink_plane& dots) {
  const double mean = dots.mean();
  power_spectrum spectrum{std::vector<double>(std::size_t{half + 1} * side)};
  spectrum.variance = std::accumulate(dots.ink.begin(), dots.ink.end(), 0.0,
                                      [&](double sum, float ink) { return sum + (ink - mean) * (ink - mean); }) /
                      double(dots.ink.size());
  if (spectrum.variance < 1e-9) return spectrum;

  const std::array<double, side> weights = hann();
  double energy = 0;  // of the window along one axis
  for (const double w : weights) energy += w * w;

  window_transform transform;
  unsigned windows = 0;
  for (unsigned top = 0; top + side <= dots.height; top += half) {
    for (unsigned left = 0; left + side <= dots.width; left += half, ++windows) {
      for (int y = 0; y < side; ++y) {
        const float* const row = dots.row(top + unsigned(y)) + left;
        for (int x = 0; x < side; ++x) {
          transform.sample(x, y) = (row[x] - mean) * weights[std::size_t(x)] * weights[std::size_t(y)];
        }
      }
      transform.run();
      for (int x = 0; x <= half; ++x) {
        for (int y = 0; y < side; ++y) spectrum.power[std::size_t(x * side + y)] += transform.power(x, y);
      }
    }
  }
  for (double& p : spectrum.power) p /= windows * energy * energy * spectrum.variance;
  return spectrum;
}

std::vector<double> radial_power(const power_spectrum& of) {
  std::vector<weighted_mean> rings(ring_count);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x <= half; ++x) {
      const auto ring = std::size_t(std::lround(std::hypot(x, signed_frequency(y))));
      rings[ring].add(of.at(unsigned(x), unsigned(y)), times(x));
    }
  }
  std::vector<double> power;
  for (const weighted_mean& ring : rings) power.push_back(ring.value());
  return power;
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

direction strongest_direction(const power_spectrum& of) {
  constexpr int band = side / 32, bands = int(0.45 * side) / band, lowest = side / 16;
  struct directions {
    weighted_mean all;
    std::array<weighted_mean, 4> near{};  // 0, 45, 90, 135 degrees
  };
  std::array<directions, std::size_t(bands)> found;
  std::array<double, std::size_t(bands)> seen{};
  double all_seen = 0;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x <= half; ++x) {
      const int fy = signed_frequency(y);
      const double distance = std::hypot(x, fy), power = of.at(unsigned(x), unsigned(y));
      const auto i = std::size_t(distance / band);
      if (distance < lowest || i >= found.size()) continue;
      const double kept = power * times(x) * std::exp(-std::pow(2 * std::numbers::pi * 2 * distance / side, 2));
      seen[i] += kept;
      all_seen += kept;
      found[i].all.add(power, times(x));
      // In sixteenths of half a turn; a direction and its opposite are one.
      const double sixteenths = (std::atan2(fy, x) / std::numbers::pi + 1) * 16;
      const long nearest = std::lround(sixteenths);
      if (nearest % 4 == 0) found[i].near[std::size_t(nearest / 4 % 4)].add(power, times(x));
    }
  }
  direction strongest;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (seen[i] < all_seen / 100 || all_seen <= 0) continue;
    for (std::size_t d = 0; d < 4; ++d) {
      const double ratio = found[i].near[d].value() / found[i].all.value();
      if (ratio > strongest.ratio) strongest = {ratio, (double(i) + 0.5) * band / side, int(d) * 45};
    }
  }
  return strongest;
}

double decibels(double power) { return 10 * std::log10(std::max(power, 1e-6)); }

}  // namespace vrk::tool
