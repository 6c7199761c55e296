// The pipeline of a print.
#pragma once

#include "tools/pipeline/pipeline.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

// layout: of RGB between stages; width: pixels of a line. Throws user_error when a table is refused; the sentence names
// the table and what is wrong with it.
pipeline make_print_pipeline(const print_tables& tables, pixel_layout layout, ed_precision precision,
                             std::uint32_t width, line_format source);

// The end of it: the halftone of the tables behind stages that leave ink planes.
void finish_with_halftone(const print_tables& tables, ed_precision precision, pipeline& to);

}  // namespace vrk::tool
