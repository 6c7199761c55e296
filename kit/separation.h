// The inks that print a colour: the inverse of the ink model, with black generation, light inks and an ink limit.
#pragma once

#include <array>

#include "kit/ink_model.h"

namespace vrk::kit {

// Light of the darkest printed neutral; image black is raised to it.
inline constexpr double darkest_neutral = 0.008;

// Largest sum of the coverages of a surface, with cyan and magenta counted as if only their full inks printed. With
// light inks the sum may be a tenth higher.
inline constexpr double ink_limit = 3.0;

using ink_coverage = std::array<double, 6>;  // record order K, C, M, Y, light cyan, light magenta; 0 ... 1

// An amount of cyan or magenta (0 ... 1, as full ink) split between the full and the light ink. Together they absorb as
// much of the main absorption band (cyan: red, magenta: green) as the full ink alone would. Small amounts use the light
// ink only, 1 the full ink only, with a smooth change between. Light dots make full ones look less coarse; beside black
// they do not, and are reduced.
struct ink_pair {
  double full, light;
};
ink_pair split_cyan(double amount, double black = 0);
ink_pair split_magenta(double amount, double black = 0);

// Inks that print a colour of the image (linear light, 0 black ... 1 paper white). Colours within the gamut of the inks
// are printed exactly, others as the nearest printable colour.
// light_inks: light tones of cyan and magenta use the light inks.
ink_coverage separate(const linear_rgb& image, bool light_inks);

// Amounts of K, C, M and Y for six inks whose cyan and magenta are split afterwards. The curves that split them know
// nothing of the black beside them; these amounts allow for that.
ink_coverage separate_to_split(const linear_rgb& image);

}  // namespace vrk::kit
