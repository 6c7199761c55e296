// The user's own tables: files, blobs, and curves on the command line.
#pragma once

#include "tools/print/print_tables.h"

namespace vrk::tool {

// Reads every table that the options name; the other places stay empty. Throws user_error when a file cannot be read,
// or when two tables are for the same place. picture: as for choose_tables.
print_tables read_own_tables(const print_options& options, const table& picture);

}  // namespace vrk::tool
