// Threshold matrices of dots that lie as far apart as possible, in regular patterns.
#pragma once

#include "kit/threshold_matrices.h"

namespace vrk::kit {

// Dispersed dots. size: a power of two.
// B. E. Bayer, An optimum method for two-level rendition of continuous-tone pictures, ICC 1973.
threshold_matrix bayer(unsigned size);

// Where dots count as nearer than they are: a distance of x, y pixels has the square xx * x^2 + yy * y^2 + xy * x * y,
// in hundredths. Patterns follow from it: lines, checkerboards or lattices at some angle.
struct nearness {
  int xx = 100, yy = 100, xy = 0;
};

// The same for any size of tile: each dot is set into the largest void that those before it have left.
threshold_matrix dispersed_dots(unsigned size, const nearness& by);

// A matrix for each plane in record order. K has the Bayer matrix of this size (2, 4, 8 or 16), the others tiles of
// other sizes, no two of which have a common divisor: so each pixel of one meets every pixel of another, and inks
// overlap as by chance at all tones. Their nearness was chosen among 25 so that overlays of two planes are even: of
// patterns with nearly the same period the overlay would beat.
matrix_set bayer_planes(unsigned size);

}  // namespace vrk::kit
