// Colours of inks on paper. The colour grids invert this model, and previews are drawn with it.
#pragma once

#include <array>
#include <span>

namespace vrk::kit {

using linear_rgb = std::array<double, 3>;  // linear light of the sRGB primaries, 0 ... 1 (paper white)

// Colours of full coverage, relative to paper white: K, C, M, Y, light cyan, light magenta. The four full inks follow
// the solids of offset printing on coated paper (ISO 12647-2), converted to sRGB. The light inks hold a third of the
// pigment (Beer's law: they transmit the cube root of what the full ink transmits).
inline constexpr std::array<linear_rgb, 6> ink_colors{{
    {0.024, 0.024, 0.024},
    {0.02, 0.36, 0.78},
    {0.80, 0.02, 0.22},
    {0.98, 0.85, 0.02},
    {0.271, 0.711, 0.921},
    {0.928, 0.271, 0.604},
}};

// Colour of a surface of which ink p covers the share coverage[p] (record order, 1 to 6 inks), with the dots of
// different inks placed independently of each other. H. E. J. Neugebauer's equation (1937) with A. Demichel's areas:
// the mean of the colours of all overprints. The colour of an overprint is the product of its inks (for the measured
// solids true to about 0.03), so the mean is a product as well.
linear_rgb print_color(std::span<const double> coverage);

}  // namespace vrk::kit
