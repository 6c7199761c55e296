#include "tools/review/measure/tints.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vrk::tool {
namespace {

constexpr unsigned rim_width = 12;

double mean_of(const ink_plane& plane, unsigned left, unsigned top, unsigned width, unsigned height) {
  double sum = 0;
  for (unsigned y = top; y < top + height; ++y)
    sum = std::accumulate(plane.row(y) + left, plane.row(y) + left + width, sum);
  return sum / width / height;
}

constexpr std::array<int, 3> seam_places{64, 128, 191};  // nearest to the quarters of 255
constexpr int seam_width = 3, neighbours_from = 6, neighbours_to = int(seam_reach);

double median(std::vector<double> values) {
  const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

rim measure_rim(const ink_plane& dots, double tone) {
  const unsigned lines = std::min(rim_width, dots.height), columns = std::min(rim_width, dots.width);
  const double left = mean_of(dots, 0, 0, columns, dots.height) / tone,
               right = mean_of(dots, dots.width - columns, 0, columns, dots.height) / tone;
  return {mean_of(dots, 0, 0, dots.width, lines) / tone, std::abs(left - 1) > std::abs(right - 1) ? left : right};
}

seam measure_seam(std::span<const double> values) {
  seam worst;
  for (const int place : seam_places) {
    std::vector<double> neighbours;
    for (int t = neighbours_from; t <= neighbours_to; ++t) {
      neighbours.push_back(values[std::size_t(place - t)]);
      neighbours.push_back(values[std::size_t(place + t)]);
    }
    const double usual = median(neighbours);
    for (int t = place - seam_width; t <= place + seam_width; ++t) {
      const double value = values[std::size_t(t)];
      if (std::abs(value - usual) < std::abs(worst.step)) continue;
      worst = {unsigned(t), value - usual, usual == 0 ? 1 : value / usual};
    }
  }
  return worst;
}

std::vector<unsigned> seam_tones() {
  std::vector<unsigned> tones;
  for (const int place : seam_places) {
    for (int t = place - neighbours_to; t <= place + neighbours_to; ++t) {
      if (std::abs(t - place) <= seam_width || std::abs(t - place) >= neighbours_from) tones.push_back(unsigned(t));
    }
  }
  return tones;
}

}  // namespace vrk::tool
