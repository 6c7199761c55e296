#include "kit/profiles/grid_axis.h"

#include <algorithm>
#include <limits>

namespace vrk::profiles {
namespace {

constexpr unsigned levels = 256;      // that a position may lie on
constexpr unsigned lines_across = 9;  // in the middle of as many equal parts

std::uint16_t sample_at(unsigned level) { return std::uint16_t(level * 257); }

// One ink along a line of all levels, as sums that give the error of any chord at once.
struct line_sums {
  std::array<double, levels> value{};
  std::array<double, levels + 1> sum{}, squares{}, moments{};  // of the levels below: v, v * v, level * v

  explicit line_sums(const std::array<double, levels>& of) : value(of) {
    for (unsigned k = 0; k < levels; ++k) {
      sum[k + 1] = sum[k] + of[k];
      squares[k + 1] = squares[k] + of[k] * of[k];
      moments[k + 1] = moments[k] + k * of[k];
    }
  }

  // Squared distance, over the levels from `first` to `last`, between the line and its chord a + b * level.
  double chord_error(unsigned first, unsigned last) const {
    const double b = (value[last] - value[first]) / (last - first), a = value[first] - b * first;
    const double n = last - first + 1, k1 = n * (first + last) / 2;
    const double k2 = k1 * k1 / n + n * (n * n - 1) / 12;  // squares of the levels
    const double v1 = sum[last + 1] - sum[first], v2 = squares[last + 1] - squares[first],
                 kv = moments[last + 1] - moments[first];
    return v2 - 2 * (a * v1 + b * kv) + a * a * n + 2 * a * b * k1 + b * b * k2;
  }
};

// Every channel along one line of R, G, B pixels, of which `at` gives that of a level.
template <class Pixel>
void add_line(const color_link& link, std::vector<line_sums>& to, Pixel at) {
  samples rgb;
  for (unsigned level = 0; level < levels; ++level) {
    const std::array<std::uint16_t, 3> pixel = at(sample_at(level));
    rgb.insert(rgb.end(), pixel.begin(), pixel.end());
  }
  const samples out = link.convert(rgb);
  for (unsigned channel = 0; channel < link.channels(); ++channel) {
    std::array<double, levels> line;
    for (unsigned k = 0; k < levels; ++k) line[k] = out[k * link.channels() + channel] / 65535.0;
    to.emplace_back(line);
  }
}

std::vector<line_sums> gray_lines(const color_link& link) {
  std::vector<line_sums> lines;
  add_line(link, lines, [](std::uint16_t v) { return std::array{v, v, v}; });
  return lines;
}

// Lines along R, G and B through all of the cube.
std::vector<line_sums> lines_through_cube(const color_link& link) {
  std::vector<line_sums> lines;
  const auto place = [](unsigned line) { return std::uint16_t((2 * line + 1) * 65535 / (2 * lines_across)); };
  for (unsigned i = 0; i < lines_across * lines_across; ++i) {
    const std::uint16_t x = place(i / lines_across), y = place(i % lines_across);
    add_line(link, lines, [=](std::uint16_t v) { return std::array{v, x, y}; });
    add_line(link, lines, [=](std::uint16_t v) { return std::array{x, v, y}; });
    add_line(link, lines, [=](std::uint16_t v) { return std::array{x, y, v}; });
  }
  return lines;
}

using level_set = std::array<bool, levels>;

// Marks the levels at which the line turns round by more than `least` of its scale.
void mark_turns(const line_sums& line, double least, level_set& turns) {
  unsigned low = 0, high = 0;  // since the last turn
  int direction = 0;
  for (unsigned k = 1; k < levels; ++k) {
    if (line.value[k] > line.value[high]) high = k;
    if (line.value[k] < line.value[low]) low = k;
    if (direction >= 0 && line.value[high] - line.value[k] > least) {
      turns[high] = true;
      direction = -1, low = k;
    } else if (direction <= 0 && line.value[k] - line.value[low] > least) {
      turns[low] = true;
      direction = 1, high = k;
    }
  }
}

// The ends of the axis, and the largest turns of the grays: at most `most` levels together, at least 2.
level_set fixed_levels(const std::vector<line_sums>& grays, std::ptrdiff_t most) {
  for (double least = 1.0 / 8192;; least *= 1.25) {
    level_set fixed{};
    for (const line_sums& line : grays) mark_turns(line, least, fixed);
    fixed.front() = fixed.back() = true;
    if (std::count(fixed.begin(), fixed.end(), true) <= most) return fixed;
  }
}

constexpr double no_way = std::numeric_limits<double>::infinity();

// Error of the cell between each two levels; none that spans a fixed level.
std::vector<std::array<double, levels>> cell_errors(const std::vector<line_sums>& lines, const level_set& fixed) {
  std::vector<std::array<double, levels>> errors(levels);
  for (auto& row : errors) row.fill(no_way);
  for (unsigned first = 0; first < levels; ++first) {
    for (unsigned last = first + 1; last < levels; ++last) {
      double& error = errors[first][last] = 0;
      for (const line_sums& line : lines) error += line.chord_error(first, last);
      if (fixed[last]) break;
    }
  }
  return errors;
}

}  // namespace

// R. Bellman's dynamic programming (1961): the best axis to a level with one cell more begins with a best axis to some
// level before it.
kit::axis_positions axis_for(const color_link& link, unsigned points) {
  const std::vector<line_sums> grays = gray_lines(link);
  const auto errors = cell_errors(lines_through_cube(link), fixed_levels(grays, std::max(2U, points * 3 / 5)));

  std::array<double, levels> best;  // least error from level 0 to each, with as many cells as have been laid
  best.fill(no_way);
  best[0] = 0;
  std::vector<std::array<std::uint8_t, levels>> before(points);  // the position before each, by cells laid
  for (unsigned cells = 1; cells < points; ++cells) {
    std::array<double, levels> longer;
    longer.fill(no_way);
    for (unsigned last = 1; last < levels; ++last) {
      for (unsigned first = 0; first < last; ++first) {
        const double error = best[first] + errors[first][last];
        if (error >= longer[last]) continue;
        longer[last] = error;
        before[cells][last] = std::uint8_t(first);
      }
    }
    best = longer;
  }

  kit::axis_positions axis(points);
  unsigned level = levels - 1;
  for (unsigned cell = points - 1; cell > 0; level = before[cell--][level]) axis[cell] = sample_at(level);
  return axis;
}

}  // namespace vrk::profiles
