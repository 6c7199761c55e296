#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/drawing/canvas.h"
#include "tools/review/report_plots.h"

namespace vrk::tool {
namespace {

// A column of bars. value: negative where there is none.
struct bar_column {
  const char *name, *unit;
  double (*value)(const photograph_figures& of);
};

template <class Value>
double if_colored(const photograph_figures& of, Value value) {
  return of.overlay ? value(*of.overlay) : -1;
}

constexpr bar_column columns[] = {
    {"noise, 2 pixels", "% of ink, mean of the planes",
     [](const photograph_figures& f) { return f.mean_noise().fine; }},
    {"noise, 4 pixels", "% of ink, mean of the planes",
     [](const photograph_figures& f) { return f.mean_noise().coarse; }},
    {"noise, eye", "% of ink, mean of the planes", [](const photograph_figures& f) { return f.mean_noise().eye; }},
    {"colour", "S-CIELAB, mean delta E",
     [](const photograph_figures& f) { return if_colored(f, [](const overlay_error& o) { return o.delta_e; }); }},
    {"lightness", "S-CIELAB, RMS of L",
     [](const photograph_figures& f) { return if_colored(f, [](const overlay_error& o) { return o.lightness; }); }},
    {"chroma", "S-CIELAB, RMS of a and b",
     [](const photograph_figures& f) { return if_colored(f, [](const overlay_error& o) { return o.chroma; }); }},
    {"colour shift", "S-CIELAB, mean of a and b",
     [](const photograph_figures& f) {
       return if_colored(f, [](const overlay_error& o) { return std::hypot(o.mean_a, o.mean_b); });
     }},
    {"lines", "times the mean of all directions", [](const photograph_figures& f) { return f.lines.ratio; }},
};

constexpr unsigned margin = 24, names = 190, bar_width = 130, gap = 24, top = 132, row_height = 26, bar_height = 14;
constexpr pixel other{222, 120, 30}, filter{35, 95, 190}, matrix{110, 150, 200}, best{30, 130, 60}, band{246, 247, 249};

}  // namespace

void plot_photographs(const std::vector<photograph_row>& rows, const std::vector<photograph>& photographs,
                      const report_options& options, output_file& to) {
  canvas picture(margin + names + unsigned(std::size(columns)) * (bar_width + gap) + margin,
                 top + unsigned(rows.size()) * row_height + margin);
  picture.write("Photographs: shorter bars are better", margin, 38, 15);
  char conditions[200];
  std::snprintf(conditions, sizeof conditions,
                "%zu inks, %u levels, seen from %g cm at %g dpi - blue: error filters, light blue: threshold matrices, "
                "orange: other programs, green: the best",
                photographs[0].asked.size(), options.levels, options.view.distance_cm, options.view.dpi);
  picture.write(conditions, margin, 64, 10, faint_text);

  std::vector<photograph_figures> means;
  for (const photograph_row& row : rows) means.push_back(row.mean());
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const unsigned y = top + unsigned(r) * row_height;
    if (r % 2 == 0) picture.fill(margin, y, picture.width() - 2 * margin, row_height, band);
    picture.write(rows[r].name, margin + 4, y + 18, 10);
  }
  for (std::size_t c = 0; c < std::size(columns); ++c) {
    const unsigned left = margin + names + unsigned(c) * (bar_width + gap);
    picture.write(columns[c].name, left, top - 28, 10);
    picture.write(columns[c].unit, left, top - 11, 6, faint_text);
    std::vector<double> values;
    for (const photograph_figures& of : means) values.push_back(columns[c].value(of));
    double least = 1e9;
    for (const double v : values) least = v >= 0 ? std::min(least, v) : least;
    std::vector<double> sorted = values;
    std::nth_element(sorted.begin(), sorted.begin() + std::ptrdiff_t(sorted.size() / 2), sorted.end());
    // A bar of the median is half as long as the longest one; what is longer has an open end.
    const double full = std::max({2 * sorted[sorted.size() / 2], least, 1e-9});
    for (std::size_t r = 0; r < rows.size(); ++r) {
      const unsigned y = top + unsigned(r) * row_height + (row_height - bar_height) / 2;
      if (values[r] < 0) {
        picture.write("-", left, y + 11, 8, faint_text);
        continue;
      }
      const bool cut = values[r] > full;
      const auto length = unsigned(std::lround(std::min(1.0, values[r] / full) * (bar_width - 40)));
      const pixel color = values[r] == least                ? best
                          : rows[r].kind == "other program" ? other
                          : rows[r].kind == "error filter"  ? filter
                                                            : matrix;
      picture.fill(left, y, std::max(length, 1u), bar_height, color);
      if (cut) picture.fill(left + length - 8, y, 3, bar_height, {255, 255, 255});
      char text[24];
      std::snprintf(text, sizeof text, values[r] < 10 ? "%.2f" : "%.1f", values[r]);
      picture.write(text, left + length + 5, y + 11, 8);
    }
  }
  picture.save(to);
}

}  // namespace vrk::tool
