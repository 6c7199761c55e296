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

// An amount of cyan or magenta (0 ... 1, as full ink) split between the full and the light ink, so that together they
// absorb as much of the light that the ink is there to absorb as the full one alone would. The light ink begins alone;
// the full one sets in smoothly and prints alone at 1. Light dots hide the coarseness of full ones, but not beside
// black: they give way to it.
struct ink_pair {
  double full, light;
};
ink_pair split_cyan(double amount, double black = 0);
ink_pair split_magenta(double amount, double black = 0);

// Inks that print a colour of the image (linear light, 0 black ... 1 paper white). What the inks can print comes out as
// it is, neutrals above all; a colour beyond them becomes the nearest that they can.
// light_inks: cyan and magenta begin with their light ink and go over to the full one.
ink_coverage separate(const linear_rgb& image, bool light_inks);

// Amounts of K, C, M and Y of which cyan and magenta are split afterwards, by curves that do not see the black beside
// them, so that the six inks print the colour.
ink_coverage separate_to_split(const linear_rgb& image);

}  // namespace vrk::kit
