#include "tools/inspect/line_drawing.h"

#include <algorithm>
#include <cstdio>

namespace vrk::tool {
namespace {

struct named_color {
  std::string_view name;
  pixel color;
};
constexpr named_color named_colors[] = {
    {"K", ink_text},      {"C", {0, 150, 215}}, {"M", {220, 0, 120}},       {"Y", {225, 180, 0}},
    {"R", {210, 40, 40}}, {"G", {30, 150, 60}}, {"B", {40, 80, 210}},       {"fifth", {120, 195, 240}},
    {"all", ink_text},    {"gray", ink_text},   {"sixth", {245, 140, 195}},
};
constexpr pixel other_colors[] = {{222, 120, 30}, {35, 95, 190}, {30, 150, 60}, {160, 60, 170}, {120, 126, 134}};

pixel color_of(const named_line& line, std::size_t number) {
  if (line.name.find(',') != std::string::npos) return ink_text;  // of several
  const auto* const known = std::find_if(std::begin(named_colors), std::end(named_colors),
                                         [&](const named_color& c) { return c.name == line.name; });
  return known != std::end(named_colors) ? known->color : other_colors[number % std::size(other_colors)];
}

bool same(const pictures::point& a, const pictures::point& b) { return a.x == b.x && a.y == b.y; }

// A line for all that lie on each other.
std::vector<named_line> merged(std::vector<named_line> lines) {
  std::vector<named_line> kept;
  for (named_line& line : lines) {
    const auto alike = std::find_if(kept.begin(), kept.end(), [&](const named_line& k) {
      return std::equal(k.points.begin(), k.points.end(), line.points.begin(), line.points.end(), same);
    });
    if (alike == kept.end()) {
      kept.push_back(std::move(line));
    } else {
      alike->name += ", " + line.name;
    }
  }
  return kept;
}

}  // namespace

drawing line_drawing(std::string name, std::string remark, chart_axis x, chart_axis y, std::vector<named_line> lines) {
  constexpr unsigned left_room = 44, bottom_room = 40;  // for the labels of ticks
  constexpr double cap = 7.5;
  const auto draw = [x = std::move(x), y = std::move(y), lines = merged(std::move(lines))](canvas& on,
                                                                                           sheet::place at) {
    chart plot(on, at.left + left_room, at.top, drawing::width - left_room, drawing::height - bottom_room, x, y);
    plot.draw_axes();
    double place = at.left + left_room;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const pixel color = color_of(lines[i], i);
      plot.plot(lines[i].points, color);
      on.write(lines[i].name, place, at.top + drawing::height - 12, cap, color);
      place += pictures::stroke_text_width(lines[i].name) * cap + 12;
    }
  };
  return {std::move(name), std::move(remark), draw};
}

chart_axis even_axis(const std::string& name, double from, double to, unsigned parts) {
  chart_axis axis{name, from, to, {}};
  for (unsigned i = 0; i <= parts; ++i) {
    const double at = from + (to - from) * i / parts;
    char label[24];
    std::snprintf(label, sizeof label, "%g", at);
    axis.ticks.push_back({at, label});
  }
  return axis;
}

}  // namespace vrk::tool
