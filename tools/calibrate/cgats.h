// Tables of patches as text: CGATS.17, and what Argyll calls .ti2 and .ti3.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/calibrate/step_chart.h"

namespace vrk::tool {

struct cgats_table {
  std::string type;                 // the first word of the file
  std::vector<std::string> fields;  // names of the columns
  std::vector<std::string> values;  // row by row

  std::size_t rows() const { return values.size() / fields.size(); }
  const std::string& at(std::size_t row, std::size_t column) const { return values[row * fields.size() + column]; }
  std::optional<std::size_t> column(std::string_view field) const;
};

// The first table of a file. Throws user_error, with `name` in front, for what is none, and for a file that ends
// inside it.
cgats_table parse_cgats(std::string_view text, const std::string& name);

// A chart for a measuring program: each patch's place, its inks in percent of full ink, and the colour that the kit's
// ink model expects, which such programs compare with what they read.
std::string cgats_of(const step_chart& chart);

// Inks of a chart, by what measuring programs call them.
struct ink_columns {
  const char *family, *letters;  // column "family_letter"; letters are in plane order
};
const ink_columns* columns_of(const cgats_table& table);  // null when it has none of the inks that can be printed

}  // namespace vrk::tool
