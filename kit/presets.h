// Ready-made tables: the defaults of the tool, and the base of tests and benchmarks.
#pragma once

#include <string_view>

#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dither_table.h"
#include "kit/ed_tables.h"
#include "kit/error_filters.h"
#include "kit/modulation.h"

namespace vrk::kit {

// "edpr" with evenly spread levels, the same for all planes.
// planes: 1 (K), 4 (K, C, M, Y) or 6; levels: 2 ... 16.
edpr_table ed_parameters(unsigned planes, unsigned levels, const modulation& modulation = no_modulation());

// The same with cells of scale_x (1, 2, 4) * scale_y (1 ... 4) dots for every pixel. levels: 2 ... dots of a cell + 1.
edpr_table cell_parameters(unsigned planes, unsigned scale_x, unsigned scale_y, unsigned levels,
                           const modulation& modulation = no_modulation());

// "dith" with evenly spread levels, the same for all planes. levels: 2 ... 255; matrix: a name of
// kit/threshold_matrices.h (the library refuses the table for any other name); in16: for handles of 16-bit samples.
dither_table dither_parameters(unsigned planes, unsigned levels, std::string_view matrix = "blue-noise",
                               bool in16 = false);

// "edtb" of a filter of kit/error_filters.h; without rows for an unknown name. levels: as in ed_parameters.
edtb_table ed_distribution(std::string_view filter = default_error_filter, unsigned levels = 2);

// The modulation that goes with a filter: strong noise with "smooth", which was made for it, fine noise with others.
modulation ed_modulation(std::string_view filter = default_error_filter, unsigned levels = 2);

// "csc2" from sRGB to the inks of kit/ink_model.h. inks: 4 or 6.
color_table ink_table(unsigned inks, unsigned points = 17, grid_encoding encoding = grid_encoding::raw16);

// "csc2" from sRGB to the four planes from which split_curves makes six.
color_table split_ink_table(unsigned points = 17);

// "1dlt" for the second converter: one gray sample (sRGB scale) to black ink, by the ink model.
curve_image black_ink_curve();

// "1dlt" main table for post-processing that makes six planes of four: light tones of cyan and magenta print with the
// light inks, dark tones with the full ones.
curve_image split_curves();

}  // namespace vrk::kit
