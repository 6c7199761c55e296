// Which inks print a colour: the ink model inverted, with black generation, light inks and an ink limit.
#pragma once

#include <array>

#include "kit/ink_model.h"

namespace vrk::kit {

// Light that the darkest printed neutral sends back; image black is raised to it.
inline constexpr double darkest_neutral = 0.008;

// Sum of the coverages that a surface takes, cyan and magenta counted as if their full inks printed alone; with light
// inks it may reach a tenth more.
inline constexpr double ink_limit = 3.0;

using ink_coverage = std::array<double, 6>;  // record order K, C, M, Y, light cyan, light magenta; 0 ... 1

// Inks that print a colour of the image (linear light, 0 black ... 1 paper white). What the inks can print comes out as
// it is, neutrals above all; a colour beyond them becomes the nearest that they can.
// light_inks: cyan and magenta begin with their light ink and go over to the full one.
ink_coverage separate(const linear_rgb& image, bool light_inks);

}  // namespace vrk::kit
