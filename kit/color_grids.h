// Grids for the colour tables. All are sampled at the positions of even_axis and take sRGB input.
#pragma once

#include <array>

#include "kit/color_table.h"

namespace vrk::kit {

// Every colour maps to itself.
color_grid identity_grid(unsigned points = 17);

// A matrix in linear light: row c holds the weights of R, G and B in channel c. Results are clipped.
using color_matrix = std::array<std::array<double, 3>, 3>;
color_grid matrix_grid(const color_matrix& matrix, unsigned points = 17);

// Moves colours away from (above 1) or towards (below 1) the gray of the same luminance; 1 changes nothing.
color_matrix saturation_matrix(double saturation);

// sRGB to the inks of kit/ink_model.h. inks: 4 (K, C, M, Y) or 6 (and light cyan, light magenta).
color_grid ink_grid(unsigned inks, unsigned points = 17);

// sRGB to K, C, M, Y for post-processing that splits them into six inks.
color_grid split_ink_grid(unsigned points = 17);

}  // namespace vrk::kit
