// Tables out of a parameter blob, by the library's look-ups.
#pragma once

#include <string>

#include "tools/pipeline/table.h"

namespace vrk::tool {

// The bytes of a whole file; throws user_error when it cannot be read.
table read_table(const std::string& path);

// What --blob says: FILE, or FILE:selector=value,... with the selectors family (H or X); kind, a, b, c, d of colour
// tables; levels of halftone tables; step of tone curves and, with ink, of rank tables. All are 0 (family H) unless
// given; levels is the number of inks.
struct blob_table {
  std::string type;  // of the blob: "CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT"
  table found;
};
blob_table read_from_blob(const std::string& argument, unsigned inks);

inline constexpr const char* blob_help =
    "A parameter blob says by its type what it holds. Selectors choose the table: family=H|X, kind, a, b, c, d "
    "(colour), "
    "levels (halftone), step (tone curves), step, ink (ranks), such as colors.bin:family=X,kind=0,a=1.";

}  // namespace vrk::tool
