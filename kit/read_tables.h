// Table images read back into what the encoders write. The images must be ones that the library takes: see explain.h.
#pragma once

#include "kit/blob.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dither_table.h"
#include "kit/ed_tables.h"

namespace vrk::kit {

// Of a grid table, all but its samples, whose places the converters know.
color_table read_color_table_header(const bytes& image);

// curves: how many the image holds, which a main table of post-processing does not always say in one way.
curve_image read_curve_image(const bytes& image, unsigned curves);

edpr_table read_edpr(const bytes& image);
edtb_table read_edtb(const bytes& image);
dither_table read_dither_table(const bytes& image);

// The entries without their data, but with offset and length, which need not lie inside the blob.
blob read_blob_directory(const bytes& image);
bool lies_inside(const blob_entry& entry, const bytes& image);
bytes data_of(const blob_entry& entry, const bytes& image);  // of one that does

}  // namespace vrk::kit
