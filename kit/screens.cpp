#include "kit/screens.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <tuple>

namespace vrk::kit {
namespace {

constexpr double full_turn = 2 * std::numbers::pi;

// 0 ... n - 1
int modulo(int a, int n) { return (a % n + n) % n; }

struct pixel {
  std::uint64_t dot;  // which it belongs to: a black one that grows, or a white one that shrinks
  double turn;        // of the dot, 0 ... 1, among all dots that get their next pixel
  int value;          // of the spot function in 2^-20: black dots have those below 0, and grow from the lowest
  unsigned at;        // place in the matrix
  double key = 0;     // pixels of the dot that have grown before, and its turn
};

// a, b: cosines of the phases along and across.
double spot_value(spot_shape spot, double a, double b) {
  switch (spot) {
    case spot_shape::ellipse:
      return -(0.65 * a + b) / 1.65;
    case spot_shape::line:
      return -(0.04 * a + b) / 1.04;
    case spot_shape::round:
      break;
  }
  return -(a + b) / 2;
}

// i, j: a dot's place in the lattice.
void set_dot(const screen& of, int i, int j, pixel& p) {
  // Its place on the tile is that over the number of dots, in tiles. Dots that the tile repeats are the same.
  const int dots = of.dots();
  const int x = modulo(i * of.across.down - j * of.along.down, dots),
            y = modulo(j * of.along.right - i * of.across.right, dots);
  p.dot = std::uint64_t(x) * std::uint64_t(dots) + std::uint64_t(y);
  // Multiples of powers of a root of x^3 = x + 1 never come near a period: turns of neighbours differ much.
  i = (of.along.right * x + of.along.down * y) / dots;
  j = (of.across.right * x + of.across.down * y) / dots;
  const double turn = i * 0.7548776662466927 + j * 0.5698402909930532;
  p.turn = turn - std::floor(turn);
}

// In order of growth, all dots in step.
void put_in_order(std::vector<pixel>& pixels) {
  const auto by_dot = [](const pixel& a, const pixel& b) {
    return std::tie(a.dot, a.value, a.at) < std::tie(b.dot, b.value, b.at);
  };
  std::sort(pixels.begin(), pixels.end(), by_dot);
  for (auto first = pixels.begin(); first != pixels.end();) {
    const auto end = std::find_if(first, pixels.end(), [&](const pixel& p) { return p.dot != first->dot; });
    for (auto p = first; p != end; ++p) p->key = double(p - first) + p->turn;
    first = end;
  }
  std::sort(pixels.begin(), pixels.end(),
            [](const pixel& a, const pixel& b) { return std::tie(a.key, a.at) < std::tie(b.key, b.at); });
}

// How far the waves are from these frequencies in cycles per pixel, relative to them; far when there is no lattice.
double distance(const screen& from, const spatial_frequency& along, const spatial_frequency& across) {
  const auto off = [&](const screen::cycles& is, const spatial_frequency& asked) {
    const auto [right, down] = from.frequency(is);
    return std::hypot(right - asked.right, down - asked.down) / asked.cycles();
  };
  return from.dots() < 1 ? 1 : std::max(off(from.along, along), off(from.across, across));
}

struct wave {
  spatial_frequency frequency;
  double amplitude;
};

// Of a plane that covers half of the paper: the first harmonics of its screen.
std::vector<wave> waves_of(const screen& of, const threshold_matrix& matrix) {
  constexpr int harmonics = 3;
  const int size = int(of.size);
  std::vector<double> cosine(of.size), sine(of.size);
  for (unsigned i = 0; i < of.size; ++i) {
    cosine[i] = std::cos(full_turn * i / size);
    sine[i] = std::sin(full_turn * i / size);
  }
  std::vector<wave> waves;
  for (int a = -harmonics; a <= harmonics; ++a) {
    for (int b = -harmonics; b <= harmonics; ++b) {
      const int right = modulo(a * of.along.right + b * of.across.right, size),
                down = modulo(a * of.along.down + b * of.across.down, size);
      if (right == 0 && down == 0) continue;
      double real = 0, imaginary = 0;
      for (int at = 0; at < size * size; ++at) {
        if (2U * matrix.ranks[std::size_t(at)] >= matrix.ranks.size()) continue;
        const auto phase = std::size_t((at % size * right + at / size * down) % size);
        real += cosine[phase];
        imaginary += sine[phase];
      }
      waves.push_back(
          {{double(right) / size, double(down) / size}, std::hypot(real, imaginary) / double(matrix.ranks.size())});
    }
  }
  return waves;
}

double alias(double frequency) { return frequency - std::round(frequency); }

}  // namespace

double spatial_frequency::cycles() const { return std::hypot(right, down); }

ruling ruling_of(const screen& of, double dpi_x, double dpi_y) {
  const auto [right, down] = of.frequency(of.along);
  const double angle = std::atan2(-down * dpi_y, right * dpi_x) * 360 / full_turn;
  return {angle < 0 ? angle + 180 : angle, std::hypot(right * dpi_x, down * dpi_y)};
}

std::array<ruling, 6> usual_rulings(double lpi) {
  return {{{45, lpi}, {15, lpi}, {75, lpi}, {0, lpi}, {60, lpi}, {30, lpi}}};
}

std::vector<screen> nearest_screens(std::span<const ruling> asked, spot_shape spot, double dpi_x, double dpi_y) {
  constexpr unsigned smallest = 32, largest = 255;
  constexpr double near = 0.0045;  // a quarter of a degree
  std::vector<screen> screens(asked.size());
  for (std::size_t p = 0; p < screens.size(); ++p) {
    const double cosine = std::cos(asked[p].angle / 360 * full_turn), sine = std::sin(asked[p].angle / 360 * full_turn);
    const spatial_frequency along{asked[p].lpi * cosine / dpi_x, -asked[p].lpi * sine / dpi_y},
        across{asked[p].lpi * sine / dpi_x, asked[p].lpi * cosine / dpi_y};
    double best = 2;
    for (unsigned size = smallest; size <= largest && best > near; ++size) {
      const auto meets_all = [&](const screen& other) { return std::gcd(size, other.size) == 1; };
      if (!std::all_of(screens.begin(), screens.begin() + std::ptrdiff_t(p), meets_all)) continue;
      const auto whole = [&](const spatial_frequency& f) {
        return screen::cycles{int(std::lround(f.right * size)), int(std::lround(f.down * size))};
      };
      const screen tried{size, whole(along), whole(across), spot};
      const double far = distance(tried, along, across);
      if (far >= best) continue;
      best = far;
      screens[p] = tried;
    }
  }
  return screens;
}

threshold_matrix screen_matrix(const screen& of) {
  const int size = int(of.size);
  std::vector<double> cosine(of.size);
  for (unsigned i = 0; i < of.size; ++i) cosine[i] = std::cos(full_turn * i / of.size);
  const auto cosine_of = [&](int phase) { return cosine[std::size_t(modulo(phase, size))]; };
  std::vector<pixel> black, white;
  for (int at = 0; at < size * size; ++at) {
    const int x = at % size, y = at / size, along = of.along.right * x + of.along.down * y,
              across = of.across.right * x + of.across.down * y;
    const double value = spot_value(of.spot, cosine_of(along), cosine_of(across));
    pixel p{0, 0, int(std::lround(value * (1 << 20))), unsigned(at)};
    const auto dot_before = [&](int phase) { return (phase - modulo(phase, size)) / size; };
    if (p.value < 0) {
      set_dot(of, dot_before(along + size / 2), dot_before(across + size / 2), p);
      black.push_back(p);
    } else {
      set_dot(of, dot_before(along), dot_before(across), p);  // white dots lie between four black ones
      p.value = -p.value;
      white.push_back(p);
    }
  }
  put_in_order(black);
  put_in_order(white);
  threshold_matrix matrix{of.size, of.size, std::vector<std::uint16_t>(std::size_t(size * size))};
  for (std::size_t i = 0; i < black.size(); ++i) matrix.ranks[black[i].at] = std::uint16_t(i);
  for (std::size_t i = 0; i < white.size(); ++i) {
    matrix.ranks[white[i].at] = std::uint16_t(matrix.ranks.size() - 1 - i);
  }
  return matrix;
}

beat strongest_beat(const screen& a, const threshold_matrix& of_a, const screen& b, const threshold_matrix& of_b) {
  const double slow = std::min(a.frequency(a.along).cycles(), b.frequency(b.along).cycles()) / 3;
  const std::vector<wave> waves_of_b = waves_of(b, of_b);
  beat strongest;
  for (const wave& one : waves_of(a, of_a)) {
    for (const wave& other : waves_of_b) {
      const spatial_frequency difference{alias(one.frequency.right - other.frequency.right),
                                         alias(one.frequency.down - other.frequency.down)};
      const double amplitude = 2 * one.amplitude * other.amplitude;
      if (difference.cycles() < slow && amplitude > strongest.amplitude) strongest = {difference, amplitude};
    }
  }
  return strongest;
}

}  // namespace vrk::kit
