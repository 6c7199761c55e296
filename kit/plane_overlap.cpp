#include "kit/plane_overlap.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vrk::kit {
namespace {

double dots_of(const threshold_matrix& matrix, double tone) {
  return std::max(1.0, std::round(tone * double(matrix.ranks.size())));
}

// Dots of a tile by the place of their pixels within tiles of width * height, which divide it.
std::vector<double> dots_by_place(const threshold_matrix& matrix, double tone, unsigned width, unsigned height) {
  std::vector<double> dots(width * height);
  const double count = dots_of(matrix, tone);
  for (unsigned at = 0; at < matrix.ranks.size(); ++at) {
    dots[at / matrix.width % height * width + at % matrix.width % width] += matrix.ranks[at] < count;
  }
  return dots;
}

}  // namespace

double overlap(const threshold_matrix& a, double tone_a, const threshold_matrix& b, double tone_b) {
  // A pixel of one tile meets those of the other that have the same place modulo the common divisors of the sizes.
  const unsigned width = std::gcd(a.width, b.width), height = std::gcd(a.height, b.height);
  const std::vector<double> of_a = dots_by_place(a, tone_a, width, height),
                            of_b = dots_by_place(b, tone_b, width, height);
  const double meetings = std::inner_product(of_a.begin(), of_a.end(), of_b.begin(), 0.0);
  return meetings * double(of_a.size()) / (dots_of(a, tone_a) * dots_of(b, tone_b));
}

overlap_range overlap_of(const matrix_set& set, std::size_t planes, std::span<const double> tones) {
  overlap_range range;
  for (std::size_t p = 0; p < planes; ++p) {
    for (std::size_t q = 0; q < p; ++q) {
      for (const double s : tones) {
        for (const double t : tones) {
          const double of_chance = overlap(set[p], s, set[q], t);
          range = {std::min(range.least, of_chance), std::max(range.most, of_chance)};
        }
      }
    }
  }
  return range;
}

}  // namespace vrk::kit
