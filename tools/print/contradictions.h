// Options that contradict each other.
#pragma once

#include "tools/print/print_tables.h"

namespace vrk::tool {

// Throws usage_error when an option would have no effect beside another option, beside one of the user's tables, or on
// such a picture. own: the user's tables alone.
void refuse_contradictions(const print_options& options, const print_tables& own, line_format source);

}  // namespace vrk::tool
