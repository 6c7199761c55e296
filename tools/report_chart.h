// Line charts of the report: a sheet of small ones with the same axes.
#pragma once

#include <string>
#include <vector>

#include "tools/canvas.h"

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

// One chart; all coordinates in units of its axes. What leaves the axes is cut off.
class chart {
 public:
  chart(canvas& on, double left, double top, double width, double height, const chart_axis& x, const chart_axis& y);

  void shade(kit::point from, kit::point to, pixel color);
  void draw_axes();  // over what is shaded, under the curves
  void plot(std::vector<kit::point> curve, pixel color, double thickness = 1.6);

 private:
  double column(double x) const { return left_ + (x - x_.from) / (x_.to - x_.from) * width_; }
  double row(double y) const { return top_ + (y_.to - y) / (y_.to - y_.from) * height_; }

  canvas& on_;
  double left_, top_, width_, height_;
  const chart_axis &x_, &y_;
};

// Cells in rows of four. The first one explains the others.
class chart_sheet {
 public:
  chart_sheet(std::size_t charts, chart_axis x, chart_axis y);

  void title(std::string_view text, std::string_view more);
  // A line of the first cell, behind a sample of the colour that it explains.
  void explain(std::string_view text, pixel color, bool area = false);
  // The next chart, its name above it on the left, a remark on the right.
  chart add(std::string_view name, std::string_view remark);

  void save(const std::filesystem::path& file) const { picture_.save(file); }

 private:
  chart_axis x_, y_;
  unsigned lines_ = 0, next_ = 1;
  canvas picture_;
};

}  // namespace vrk::tool
