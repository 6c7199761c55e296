// Ready-made tables: what the tool prints with, and what tests and benchmarks start from.
#pragma once

#include <string_view>

#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/ed_tables.h"
#include "kit/modulation.h"

namespace vrk::kit {

// "edpr" with evenly spread levels, the same for all planes.
// planes: 1 (K), 4 (K, C, M, Y) or 6; levels: 2 ... 16.
edpr_table ed_parameters(unsigned planes, unsigned levels, const modulation& modulation = no_modulation());

// "edtb" of a filter of kit/error_filters.h; without rows for a name that is not known.
edtb_table ed_distribution(std::string_view filter = "fan");

// "csc2" from sRGB to the inks of kit/ink_model.h. inks: 4 or 6.
color_table ink_table(unsigned inks, unsigned points = 17, grid_encoding encoding = grid_encoding::raw16);

// "1dlt" for the second converter: one gray sample (sRGB scale) to black ink alone, as the ink model prints it.
curve_image black_ink_curve();

}  // namespace vrk::kit
