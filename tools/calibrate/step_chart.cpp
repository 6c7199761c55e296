#include "tools/calibrate/step_chart.h"

#include <cmath>
#include <cstdio>
#include <numbers>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// In millimetres.
constexpr double margin = 12, row_name = 12, head = 20, gap = 1, label = 2.4, cap = 1.2;

struct ramp {
  const char* name;
  std::array<bool, 6> inks;  // in plane order: K, C, M, Y, light cyan, light magenta
};
constexpr ramp ramps[] = {
    {"K", {true}},
    {"C", {false, true}},
    {"M", {false, false, true}},
    {"Y", {false, false, false, true}},
    {"lc", {false, false, false, false, true}},
    {"lm", {false, false, false, false, false, true}},
    {"M+Y", {false, false, true, true}},
    {"C+Y", {false, true, false, true}},
    {"C+M", {false, true, true}},
    {"CMY", {false, true, true, true}},
};

std::vector<ramp> ramps_of(unsigned inks) {
  std::vector<ramp> chosen;
  for (const ramp& r : ramps) {
    bool has = true;
    for (std::size_t ink = inks; ink < r.inks.size(); ++ink) has = has && !r.inks[ink];
    if (has) chosen.push_back(r);
  }
  return chosen;
}

// A ramp takes one row or several, of about the same length.
struct row_grid {
  double side;
  unsigned columns, rows_of_a_ramp;
};

row_grid grid_of(const chart_options& options, std::size_t ramp_count) {
  const double across = options.paper.width - 2 * margin - row_name, down = options.paper.height - margin - head;
  for (double side = largest_patch; side >= smallest_patch; side -= 0.5) {
    const auto fitting = unsigned(std::max(0.0, (across + gap) / (side + gap)));
    if (fitting == 0) continue;
    const unsigned rows = (options.steps + fitting - 1) / fitting;
    if (double(rows * ramp_count) * (side + label) > down) continue;
    return {side, (options.steps + rows - 1) / rows, rows};
  }
  char sentence[160];
  std::snprintf(sentence, sizeof sentence,
                "the chart: %zu ramps of %u patches, %g mm a side, do not fit on %g x %g mm: expected fewer --steps or "
                "a larger --size",
                ramp_count, options.steps, smallest_patch, options.paper.width, options.paper.height);
  throw usage_error(sentence);
}

// A ... Z, AA, AB ...
std::string row_letters(unsigned row) {
  std::string letters(1, char('A' + row % 26));
  return row < 26 ? letters : row_letters(row / 26 - 1) + letters;
}

enum class align { left, right };

void write(std::string_view words, double x, double base, double size, align where,
           std::vector<pictures::segment>& to) {
  if (where == align::right) x -= pictures::stroke_text_width(words) * size;
  for (pictures::segment s : pictures::stroke_text(words)) {
    for (pictures::point* const p : {&s.from, &s.to}) *p = {x + p->x * size, base + (p->y - 1) * size};
    to.push_back(s);
  }
}

// A cross in a circle.
void add_mark(double x, double y, std::vector<pictures::segment>& to) {
  constexpr double arm = 4, radius = 2.5;
  constexpr int pieces = 48;
  to.push_back({{x - arm, y}, {x + arm, y}});
  to.push_back({{x, y - arm}, {x, y + arm}});
  const auto at = [&](int i) {
    const double angle = 2 * std::numbers::pi * i / pieces;
    return pictures::point{x + radius * std::cos(angle), y + radius * std::sin(angle)};
  };
  for (int i = 0; i < pieces; ++i) to.push_back({at(i), at(i + 1)});
}

}  // namespace

step_chart lay_out_chart(const chart_options& options) {
  const std::vector<ramp> chosen = ramps_of(options.inks);
  const row_grid grid = grid_of(options, chosen.size());
  step_chart chart{options.inks,
                   options.steps,
                   unsigned(chosen.size()),
                   grid.columns,
                   unsigned(chosen.size()) * grid.rows_of_a_ramp,
                   grid.side,
                   {},
                   {},
                   {}};
  unsigned row = 0;
  for (const ramp& r : chosen) {
    for (unsigned step = 0; step < options.steps; ++step) {
      const unsigned column = step % grid.columns, tone = (255 * step + (options.steps - 1) / 2) / (options.steps - 1);
      const double left = margin + row_name + column * (grid.side + gap), top = head + row * (grid.side + label);
      if (column == 0) {
        write(row_letters(row), margin, top + grid.side / 2, 2.2, align::left, chart.text);
        write(r.name, margin, top + grid.side / 2 + 3.2, 1.8, align::left, chart.text);
      }
      chart_patch patch{row_letters(row) + std::to_string(column + 1), {}, left, top};
      for (std::size_t ink = 0; ink < r.inks.size(); ++ink) patch.tones[ink] = r.inks[ink] ? std::uint8_t(tone) : 0;
      write(patch.place, left, top - 0.6, cap, align::left, chart.text);
      write(std::to_string((200 * tone + 255) / 510), left + grid.side - 0.8, top - 0.6, cap, align::right, chart.text);
      chart.patches.push_back(std::move(patch));
      if (column + 1 == grid.columns || step + 1 == options.steps) ++row;
    }
  }
  write("Step chart, without curves", margin + 6, 9, 2.2, align::left, chart.text);
  write("place and % of full ink above each patch", margin + 6, 13, 1.5, align::left, chart.text);
  for (const double x : {margin / 2, options.paper.width - margin / 2}) {
    for (const double y : {margin / 2, options.paper.height - margin / 2}) add_mark(x, y, chart.marks);
  }
  return chart;
}

}  // namespace vrk::tool
