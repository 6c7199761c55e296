// Lines in a cell of a sheet, and the colours of what has a name.
#pragma once

#include "tools/drawing/chart.h"
#include "tools/inspect/drawings.h"

namespace vrk::tool {

struct named_line {
  std::string name;
  std::vector<pictures::point> points;
};

// Colours follow from the names: inks, channels, or "all". Lines that lie on each other are drawn as one.
drawing line_drawing(std::string name, std::string remark, chart_axis x, chart_axis y, std::vector<named_line> lines);

// An axis with so many parts of one length.
chart_axis even_axis(const std::string& name, double from, double to, unsigned parts);

}  // namespace vrk::tool
