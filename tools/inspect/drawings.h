// What can be drawn of tables.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/drawing/sheet.h"
#include "tools/pipeline/table.h"

namespace vrk::tool {

// The content of one cell of a sheet.
struct drawing {
  static constexpr unsigned width = 374, height = 256;

  std::string name, remark;
  std::function<void(canvas& on, sheet::place at)> draw;
};

// Of a table of any kind, or of all tables in a blob; at most so many. Empty when there is nothing to draw.
inline constexpr std::size_t most_drawings = 64;
std::vector<drawing> drawings_of(const table& image);

// The parts for the kinds of tables. The library takes the table.
std::vector<drawing> draw_colors(const table& image);
std::vector<drawing> draw_curves(const table& image);
std::vector<drawing> draw_edpr(const table& image);
std::vector<drawing> draw_edtb(const table& image);
std::vector<drawing> draw_dith(const table& image);

}  // namespace vrk::tool
