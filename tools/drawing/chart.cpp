#include "tools/drawing/chart.h"

#include <algorithm>

namespace vrk::tool {
namespace {

constexpr pixel grid_line{226, 228, 232}, frame_line{150, 155, 162};

// In pixels; the rooms are for the labels of ticks.
constexpr unsigned chart_width = 330, chart_height = 190, left_room = 44, bottom_room = 40;

// The part of a segment between two levels of y; false when there is none.
bool cut(pictures::segment& s, double low, double high) {
  const auto at = [&s](double y) {
    return pictures::point{s.from.x + (s.to.x - s.from.x) * (y - s.from.y) / (s.to.y - s.from.y), y};
  };
  if (std::max(s.from.y, s.to.y) < low || std::min(s.from.y, s.to.y) > high) return false;
  const pictures::segment whole = s;
  for (pictures::point* const end : {&s.from, &s.to}) {
    if (end->y < low) *end = at(low);
    if (end->y > high) *end = at(high);
  }
  return whole.from.x <= whole.to.x;
}

}  // namespace

chart::chart(canvas& on, double left, double top, double width, double height, chart_axis x, chart_axis y)
    : on_(on), left_(left), top_(top), width_(width), height_(height), x_(std::move(x)), y_(std::move(y)) {}

void chart::shade(pictures::point from, pictures::point to, pixel color) {
  const double left = column(from.x), top = row(to.y);
  on_.fill(unsigned(left), unsigned(top), unsigned(column(to.x) - left), unsigned(row(from.y) - top), color);
}

void chart::draw_axes() {
  constexpr double cap = 7.5;
  for (const chart_axis::tick& t : x_.ticks) {
    on_.draw({{{column(t.at), top_}, {column(t.at), top_ + height_}}}, 1, grid_line);
    on_.write(t.label, column(t.at), top_ + height_ + 13, cap, faint_text, canvas::align::centre);
  }
  for (const chart_axis::tick& t : y_.ticks) {
    on_.draw({{{left_, row(t.at)}, {left_ + width_, row(t.at)}}}, 1, t.at == 0 ? frame_line : grid_line);
    on_.write(t.label, left_ - 6, row(t.at) + cap / 2, cap, faint_text, canvas::align::right);
  }
  on_.write(y_.name, left_ + 6, top_ + 14, cap, faint_text);
  on_.write(x_.name, left_ + width_, top_ + height_ + 28, cap, faint_text, canvas::align::right);
  const pictures::point a{left_, top_}, b{left_ + width_, top_}, c{left_ + width_, top_ + height_},
      d{left_, top_ + height_};
  on_.draw({{a, b}, {b, c}, {c, d}, {d, a}}, 1, frame_line);
}

void chart::plot(std::vector<pictures::point> curve, pixel color, double thickness) {
  std::vector<pictures::segment> strokes;
  for (std::size_t i = 1; i < curve.size(); ++i) {
    pictures::segment s{curve[i - 1], curve[i]};
    if (!cut(s, y_.from, y_.to)) continue;
    for (pictures::point* const end : {&s.from, &s.to}) *end = {column(end->x), row(end->y)};
    strokes.push_back(s);
  }
  on_.draw(strokes, thickness, color);
}

chart_sheet::chart_sheet(std::size_t charts, std::string_view title, std::string_view more)
    : cells_(1 + charts, left_room + chart_width, chart_height + bottom_room), explanations_(cells_.add("", "")) {
  cells_.title(title, more);
}

void chart_sheet::explain(std::string_view text, pixel color, bool area) {
  const auto [left, first] = explanations_;
  const unsigned top = first + 22 * lines_++;
  cells_.picture().fill(left, top + (area ? 0 : 5), 20, area ? 12 : 2, color);
  cells_.picture().write(text, left + 28, top + 10, 8.5);
}

chart chart_sheet::add(std::string_view name, std::string_view remark, const chart_axis& x, const chart_axis& y) {
  const auto [left, top] = cells_.add(name, remark);
  return {cells_.picture(), double(left + left_room), double(top), chart_width, chart_height, x, y};
}

}  // namespace vrk::tool
