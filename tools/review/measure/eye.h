// What an eye sees of a print.
#pragma once

#include <array>
#include <cmath>
#include <numbers>

#include "tools/review/measure/filter.h"

namespace vrk::tool {

struct viewing {
  double distance_cm = 40;
  double dpi = 600;

  double pixels_per_degree() const { return distance_cm * dpi / 2.54 * std::tan(std::numbers::pi / 180); }
};

// How much an eye keeps of a frequency of lightness, 1 for the lowest ones: R. Näsänen, Visibility of halftone dot
// textures, IEEE Trans. SMC 14 (1984), as M. Analoui and J. P. Allebach use it, Model-based halftoning using direct
// binary search, SPIE 1666 (1992). For a page of middle tones in office light, 50 cd/m2.
transfer eye(const viewing& view);

// The three channels of S-CIELAB: lightness, red to green, blue to yellow. X. Zhang and B. A. Wandell, A spatial
// extension of CIELAB for digital color image reproduction, SID Digest 27 (1996).
std::array<transfer, 3> opponent_channels(const viewing& view);

}  // namespace vrk::tool
