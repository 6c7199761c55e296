#include <algorithm>
#include <cmath>

#include "kit/planes.h"
#include "kit/read_tables.h"
#include "tools/inspect/line_drawing.h"
#include "tools/review/measure/spectrum.h"

namespace vrk::tool {
namespace {

// A threshold or modulation matrix, or cells of dots, and the planes that have it.
struct tile {
  std::string planes;
  unsigned width, height;
  std::vector<int> values;
};

bool same(const tile& a, const tile& b) { return a.width == b.width && a.height == b.height && a.values == b.values; }

// Planes that have the same tile are drawn once.
void add_plane(std::vector<tile>& to, tile of_plane) {
  const auto alike = std::find_if(to.begin(), to.end(), [&](const tile& t) { return same(t, of_plane); });
  if (alike == to.end()) {
    to.push_back(std::move(of_plane));
  } else {
    alike->planes += ", " + of_plane.planes;
  }
}

// The smallest value is black, the largest white.
drawing picture_of(const tile& shown, const std::string& what) {
  const std::string size = std::to_string(shown.width) + " x " + std::to_string(shown.height);
  return {shown.planes, size + " " + what, [shown](canvas& on, sheet::place at) {
            const auto [smallest, largest] = std::minmax_element(shown.values.begin(), shown.values.end());
            const unsigned side = drawing::height / std::max(shown.width, shown.height);
            for (unsigned y = 0; y < shown.height; ++y) {
              for (unsigned x = 0; x < shown.width; ++x) {
                const int above = shown.values[std::size_t{y} * shown.width + x] - *smallest;
                const auto gray = std::uint8_t(above * 255 / std::max(1, *largest - *smallest));
                on.fill(at.left + x * side, at.top + y * side, side, side, {gray, gray, gray});
              }
            }
          }};
}

constexpr unsigned patch = 2 * spectrum_window;

// The tile repeated, each value by `ink`.
template <class Ink>
named_line spectrum_of(const std::string& name, const tile& of, const Ink& ink) {
  ink_plane dots{patch, patch, {}};
  for (unsigned y = 0; y < patch; ++y) {
    for (unsigned x = 0; x < patch; ++x) {
      dots.ink.push_back(float(ink(of.values[std::size_t{y % of.height} * of.width + x % of.width])));
    }
  }
  const std::vector<double> power = radial_power(spectrum_of(dots));
  named_line line{name, {}};
  for (std::size_t i = 1; i < power.size(); ++i) {
    line.points.push_back({double(i) / spectrum_window, decibels(power[i])});
  }
  return line;
}

drawing spectrum_drawing(const tile& of, std::vector<named_line> lines) {
  chart_axis frequency = even_axis("cycles per pixel", 0, 0.7, 7);
  frequency.to = 0.71;  // the corner of the spectrum
  return line_drawing(of.planes, "spectrum, radially averaged", std::move(frequency), even_axis("dB", -60, 30, 3),
                      std::move(lines));
}

// Of the dots that three tones have.
drawing dot_spectra(const tile& of) {
  std::vector<int> ranks = of.values;
  std::sort(ranks.begin(), ranks.end());
  std::vector<named_line> lines;
  for (const unsigned percent : {10U, 25U, 50U}) {
    const int first_without = ranks[ranks.size() * percent / 100];
    lines.push_back(spectrum_of(std::to_string(percent) + " %", of, [&](int rank) { return rank < first_without; }));
  }
  return spectrum_drawing(of, std::move(lines));
}

// Input value to level value.
drawing levels_drawing(const kit::edpr_table& table) {
  std::vector<named_line> lines;
  for (std::size_t p = 0; p < 6; ++p) {
    const kit::ed_plane& plane = table.planes[p];
    if (plane.level_values.empty()) continue;
    named_line line{std::string(kit::table_plane_names[p]), {{0, double(plane.level_values[0])}}};
    for (std::size_t t = 0; t < plane.thresholds.size(); ++t) {
      const double at = std::min<double>(plane.thresholds[t], 1023);
      line.points.push_back({at, double(plane.level_values[t])});
      line.points.push_back({at, double(plane.level_values[t + 1])});
    }
    line.points.push_back({1023, double(plane.level_values.back())});
    lines.push_back(std::move(line));
  }
  return line_drawing("levels", "chosen without modulation", even_axis("input value", 0, 1023, 3),
                      even_axis("level value", 0, 1023, 3), std::move(lines));
}

// Dots of levels spread over the plane's range, one patch a level.
drawing cells_drawing(const std::string& plane_name, const kit::edpr_table& table, const kit::ed_plane& plane) {
  const auto draw = [table, plane](canvas& on, sheet::place at) {
    constexpr unsigned across = 5, down = 4, dots = 12, dot = 4, room_x = 74, room_y = 64;
    const std::size_t levels = plane.patterns.size(), shown = std::min<std::size_t>(levels, across * down);
    for (std::size_t n = 0; n < shown; ++n) {
      const std::size_t level = shown == 1 ? 0 : n * (levels - 1) / (shown - 1);
      const auto left = unsigned(at.left + n % across * room_x), top = unsigned(at.top + n / across * room_y);
      on.write(std::to_string(level), left, top + 9, 7, faint_text);
      on.fill(left, top + 12, dots * dot, dots * dot, {240, 240, 240});
      for (unsigned y = 0; y < dots; ++y) {
        for (unsigned x = 0; x < dots; ++x) {
          const unsigned column = x / plane.scale_x % table.pattern_width,
                         row = y / plane.scale_y % table.pattern_height;
          const unsigned cell = plane.patterns[level][std::size_t{row} * table.pattern_width + column];
          const unsigned bit = 15 - 4 * (y % plane.scale_y) - x % plane.scale_x;
          if ((cell >> bit & 1) != 0) on.fill(left + x * dot, top + 12 + y * dot, dot, dot, ink_text);
        }
      }
    }
  };
  return {plane_name, "dots of the levels", draw};
}

}  // namespace

std::vector<drawing> draw_dith(const table& image) {
  const kit::dither_table table = kit::read_dither_table(image.image);
  std::vector<tile> tiles;
  for (std::size_t p = 0; p < 6; ++p) {
    const kit::dither_plane& plane = table.planes[p];
    if (plane.level_values.empty()) continue;
    add_plane(tiles, {std::string(kit::table_plane_names[p]),
                      plane.width,
                      plane.height,
                      {plane.matrix.begin(), plane.matrix.end()}});
  }
  std::vector<drawing> all;
  for (const tile& t : tiles) {
    all.push_back(picture_of(t, "ranks"));
    all.push_back(dot_spectra(t));
  }
  return all;
}

std::vector<drawing> draw_edpr(const table& image) {
  const kit::edpr_table table = kit::read_edpr(image.image);
  std::vector<drawing> all{levels_drawing(table)};
  std::vector<tile> tiles;
  for (std::size_t p = 0; p < 6; ++p) {
    const kit::ed_plane& plane = table.planes[p];
    if (plane.level_values.empty()) continue;
    if (table.extended()) all.push_back(cells_drawing(std::string(kit::table_plane_names[p]), table, plane));
    add_plane(tiles, {std::string(kit::table_plane_names[p]),
                      table.matrix_width,
                      table.matrix_height,
                      {plane.modulation.begin(), plane.modulation.end()}});
  }
  for (const tile& t : tiles) {
    if (t.values.size() == 1) continue;  // no modulation
    all.push_back(picture_of(t, "modulation"));
    all.push_back(spectrum_drawing(t, {spectrum_of("modulation", t, [](int value) { return value; })}));
  }
  return all;
}

}  // namespace vrk::tool
