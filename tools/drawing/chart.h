// Line charts on a sheet.
#pragma once

#include <string>
#include <vector>

#include "tools/drawing/sheet.h"

namespace vrk::tool {

struct chart_axis {
  struct tick {
    double at;
    std::string label;
  };
  std::string name;
  double from, to;
  std::vector<tick> ticks;
};

// One chart. Coordinates are in units of its axes; curves are cut off at the ends of the axes.
class chart {
 public:
  chart(canvas& on, double left, double top, double width, double height, chart_axis x, chart_axis y);

  void shade(pictures::point from, pictures::point to, pixel color);
  void draw_axes();  // after `shade`, before `plot`
  void plot(std::vector<pictures::point> curve, pixel color, double thickness = 1.6);

 private:
  double column(double x) const { return left_ + (x - x_.from) / (x_.to - x_.from) * width_; }
  double row(double y) const { return top_ + (y_.to - y) / (y_.to - y_.from) * height_; }

  canvas& on_;
  double left_, top_, width_, height_;
  chart_axis x_, y_;
};

// A sheet with the legend in its first cell and a chart in each of the others.
class chart_sheet {
 public:
  chart_sheet(std::size_t charts, std::string_view title, std::string_view more);

  // Adds a line to the legend: a sample of the colour, and the text.
  void explain(std::string_view text, pixel color, bool area = false);
  chart add(std::string_view name, std::string_view remark, const chart_axis& x, const chart_axis& y);

  void save(output_file& to) { cells_.picture().save(to); }

 private:
  sheet cells_;
  sheet::place explanations_;
  unsigned lines_ = 0;
};

}  // namespace vrk::tool
