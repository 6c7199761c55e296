#include "tools/review/measure/visible_noise.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vrk::tool {
namespace {

constexpr std::size_t tones = 256;

std::size_t tone_of(float ink) { return std::size_t(std::clamp(ink, 0.0f, 1.0f) * float(tones - 1) + 0.5f); }

// Means of the difference by tone, each with its neighbours. Paper and full ink stand for themselves: they have no
// dots that could stray, and pages are full of them.
std::array<float, tones> tone_curve(const ink_plane& difference, const ink_plane& ink) {
  std::array<double, tones> sum{}, count{};
  for (std::size_t i = 0; i < ink.ink.size(); ++i) {
    sum[tone_of(ink.ink[i])] += double(difference.ink[i]);
    ++count[tone_of(ink.ink[i])];
  }
  constexpr double spread = 6;  // tones
  std::array<float, tones> curve{};
  const auto mean = [](double all, double number) { return float(number > 0 ? all / number : 0); };
  curve[0] = mean(sum[0], count[0]);
  curve[tones - 1] = mean(sum[tones - 1], count[tones - 1]);
  for (std::size_t t = 1; t + 1 < tones; ++t) {
    double near_sum = 0, near_count = 0;
    for (std::size_t n = 1; n + 1 < tones; ++n) {
      const double weight = std::exp(-0.5 * std::pow((double(n) - double(t)) / spread, 2));
      near_sum += weight * sum[n];
      near_count += weight * count[n];
    }
    curve[t] = mean(near_sum, near_count);
  }
  return curve;
}

// Of the inner pixels, in percent.
double root_mean_square(const ink_plane& plane) {
  const unsigned edge = std::min(16u, std::min(plane.width, plane.height) / 4);
  double sum = 0;
  for (unsigned y = edge; y + edge < plane.height; ++y) {
    const float* const row = plane.row(y);
    for (unsigned x = edge; x + edge < plane.width; ++x) sum += double(row[x]) * double(row[x]);
  }
  return 100 * std::sqrt(sum / (double(plane.width - 2 * edge) * double(plane.height - 2 * edge)));
}

visible_noise noise_of(const ink_plane& difference, const viewing& view) {
  const auto gaussians = filtered(difference, gaussian(2), gaussian(4));
  const auto seen = filtered(difference, eye(view), [](double) { return 0.0; });
  return {root_mean_square(gaussians[0]), root_mean_square(gaussians[1]), root_mean_square(seen[0])};
}

}  // namespace

ink_plane difference_without_tone_curve(const ink_plane& dots, const ink_plane& ink) {
  ink_plane difference = dots;
  for (std::size_t i = 0; i < ink.ink.size(); ++i) difference.ink[i] -= ink.ink[i];
  const std::array<float, tones> curve = tone_curve(difference, ink);
  for (std::size_t i = 0; i < ink.ink.size(); ++i) difference.ink[i] -= curve[tone_of(ink.ink[i])];
  return difference;
}

visible_noise measure_noise(const ink_plane& dots, const ink_plane& ink, const viewing& view) {
  return noise_of(difference_without_tone_curve(dots, ink), view);
}

visible_noise measure_noise(const ink_plane& dots, const viewing& view) {
  ink_plane difference = dots;
  const auto mean = float(dots.mean());
  for (float& d : difference.ink) d -= mean;
  return noise_of(difference, view);
}

}  // namespace vrk::tool
