// Threshold matrices of dots without order that keep their distance.
#pragma once

#include "kit/threshold_matrices.h"

namespace vrk::kit {

// Blue noise of 64 x 64 pixels, the same on every call.
// R. Ulichney, The void-and-cluster method for dither array generation, SPIE 1913, 1993.
const threshold_matrix& blue_noise();

// The same shifted for each plane in record order, so that dots of different inks meet by chance.
matrix_set shifted_blue_noise();

}  // namespace vrk::kit
