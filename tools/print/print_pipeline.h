// The pipeline of a print.
#pragma once

#include "tools/pipeline/pipeline.h"
#include "tools/print/print_options.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

// Throws user_error when a table is refused; the sentence names the table and what is wrong with it.
pipeline make_pipeline(const print_options& options, const print_tables& tables, std::uint32_t width,
                       line_format source);

}  // namespace vrk::tool
