// How far the colours of overlaid dots are from those of the continuous inks, as an eye sees both.
#pragma once

#include <span>

#include "tools/review/measure/eye.h"

namespace vrk::tool {

// In CIELAB units, over the pixels of a picture, relative to paper (D65).
struct overlay_error {
  double delta_e = 0;                // mean of the CIE 1976 difference
  double lightness = 0, chroma = 0;  // root of the mean square of the errors of L*, and of a*, b* together
  double mean_a = 0, mean_b = 0;     // colour that all dots add, where they meet more or less often than by chance
};

// S-CIELAB of both pictures, whose inks become colours by the kit's ink model. Planes K, C, M, Y and the light inks
// (1 to 6), dots and ink of each of one size.
overlay_error measure_overlay(std::span<const ink_plane> dots, std::span<const ink_plane> inks, const viewing& view);

}  // namespace vrk::tool
