// Filters of planes, given by what they leave of each spatial frequency.
#pragma once

#include <array>
#include <functional>

#include "tools/review/measure/ink_plane.h"

namespace vrk::tool {

// What is left of a frequency in cycles per pixel, whatever its direction; 1 leaves it as it is.
using transfer = std::function<double(double frequency)>;

// Of a Gaussian with this standard deviation in pixels.
transfer gaussian(double sigma);

// The plane by two filters, and two planes of one size by one filter: either costs as much as one plane by one filter.
// Beyond the edges the planes go on as in a mirror.
std::array<ink_plane, 2> filtered(const ink_plane& plane, const transfer& first, const transfer& second);
std::array<ink_plane, 2> filtered(const ink_plane& first, const ink_plane& second, const transfer& by);

}  // namespace vrk::tool
