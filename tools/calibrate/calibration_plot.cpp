#include "tools/calibrate/calibration_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/drawing/chart.h"
#include "tools/pipeline/halftone.h"

namespace vrk::tool {
namespace {

constexpr pixel orange{222, 120, 30}, blue{35, 95, 190}, mark{120, 126, 134};
constexpr pixel ink_lines[] = {{38, 42, 48},  {0, 150, 205},   {205, 30, 130},
                               {215, 180, 0}, {130, 200, 230}, {230, 150, 195}};

// Ticks at round numbers, about five of them.
chart_axis axis_up_to(double most, std::string name) {
  const double rough = most / 5, power = std::pow(10, std::floor(std::log10(rough)));
  const double step = power * (rough > 5 * power ? 10 : rough > 2 * power ? 5 : rough > power ? 2 : 1);
  chart_axis axis{std::move(name), 0, most, {}};
  for (int i = 0; i * step <= most; ++i) {
    char label[16];
    std::snprintf(label, sizeof label, "%g", i * step);
    axis.ticks.push_back({i * step, label});
  }
  return axis;
}

// value(asked) over all tones in percent.
template <class Value>
std::vector<pictures::point> line_of(const Value& value) {
  std::vector<pictures::point> line;
  for (int percent = 0; percent <= 100; ++percent) line.push_back({double(percent), value(percent / 100.0)});
  return line;
}

void plot_ink(const ink_calibration& ink, chart_sheet& sheet) {
  const auto before = line_of([&](double asked) { return kit::shown(ink.steps, asked); });
  const auto after = line_of([&](double asked) { return kit::shown(ink.steps, ink.made.tone, asked); });
  double most = 0;
  for (const kit::measured_point& step : ink.steps) most = std::max(most, step.value);
  const std::string unit = ink.unit;
  chart plot = sheet.add(ink_name(ink.plane), "", axis_up_to(100, "% asked for"),
                         axis_up_to(1.05 * most, unit == "L*"   ? "darker than paper, L"
                                                 : unit == "dE" ? "off paper, delta E"
                                                                : "tone value, %"));
  plot.draw_axes();
  plot.plot(line_of([&](double asked) { return ink.made.aim(asked); }), mark, 1);
  plot.plot(before, orange);
  for (const kit::measured_point& step : ink.steps) {
    const pictures::point at{100 * step.at, step.value};
    plot.plot({at, at}, orange, 4.5);
  }
  plot.plot(after, blue);
}

}  // namespace

void plot_calibration(const std::vector<ink_calibration>& inks, const std::string& title, output_file& to) {
  chart_sheet sheet(inks.size() + 1, "Calibration", title);
  sheet.explain("measured, without a curve", orange);
  sheet.explain("expected with the curve", blue);
  sheet.explain("aimed at", mark);
  for (const ink_calibration& ink : inks) plot_ink(ink, sheet);
  chart plot = sheet.add("curves", "", axis_up_to(100, "% asked for"), axis_up_to(100, "% printed"));
  plot.draw_axes();
  for (std::size_t p = 0; p < inks.size(); ++p) {
    const kit::curve& tone = inks[p].made.tone;
    plot.plot(line_of([&](double asked) { return tone[std::size_t(std::lround(asked * 1023))] / 655.35; }),
              ink_lines[p]);
  }
  sheet.save(to);
}

}  // namespace vrk::tool
