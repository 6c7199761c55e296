// Tables out of a parameter blob, by the library's look-ups.
#pragma once

#include <string>

#include "tools/table.h"

namespace vrk::tool {

// The bytes of a whole file; throws user_error when it cannot be read.
table read_table(const std::string& path);

// What --blob says: FILE, or FILE:selector=value,... with the selectors family (H or X), kind, a, b, c, d for colour
// tables and family, levels for halftone tables. All are 0 (family H) unless given; levels is the number of inks.
table read_from_blob(const std::string& argument, unsigned inks);

}  // namespace vrk::tool
