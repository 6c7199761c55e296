// How planes of dots meet on paper.
#pragma once

#include <span>

#include "kit/threshold_matrices.h"

namespace vrk::kit {

// Pixels on which two planes both have dots, as a multiple of those on which dots at random would meet. tones: of the
// planes, as shares of their pixels, rounded to whole dots of a tile; at least one dot each. Counts the area in which
// both tiles repeat, whatever its size.
double overlap(const threshold_matrix& a, double tone_a, const threshold_matrix& b, double tone_b);

// The least and the most over all pairs of the set's planes (the first `planes` of them) and all pairs of these tones.
struct overlap_range {
  double least = 1, most = 1;
};
overlap_range overlap_of(const matrix_set& set, std::size_t planes, std::span<const double> tones);

}  // namespace vrk::kit
