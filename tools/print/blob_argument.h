// Files of tables, and tables out of parameter blobs.
#pragma once

#include <string>

#include "tools/pipeline/table.h"

namespace vrk::tool {

// The bytes of a whole file. Throws user_error when it cannot be read.
table read_table(const std::string& path);

// argument: FILE, or FILE:selector=value,... The selectors are family (H or X); kind, a, b, c, d of colour tables;
// levels of halftone tables; step of tone curves; step and ink of rank tables. What is not given is 0 (family: H), but
// levels is `inks`. Throws user_error when there is no such table.
struct blob_table {
  std::string file;
  std::string type;  // of the blob, see kit/inspect.h
  table found;
};
blob_table read_from_blob(const std::string& argument, unsigned inks);

inline constexpr const char* blob_help =
    "The type of a parameter blob says what its tables are for. Selectors choose one of them: family=H|X; kind, a, b, "
    "c, d (colour); levels (halftone); step (tone curves); step, ink (ranks). Example: colors.bin:family=X,kind=0,a=1";

}  // namespace vrk::tool
