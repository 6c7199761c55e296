#include "kit/separation.h"

#include <algorithm>
#include <cmath>

#include "kit/srgb.h"

namespace vrk::kit {
namespace {

using vector3 = std::array<double, 3>;
using matrix3 = std::array<vector3, 3>;

vector3 srgb(const linear_rgb& color) {
  return {linear_to_srgb(color[0]), linear_to_srgb(color[1]), linear_to_srgb(color[2])};
}

// Black of a neutral, or of the neutral part of a colour. Up to a density of about one half, cyan, magenta and yellow
// print it alone, so that light tones have no coarse black dots. All density beyond that is black. The change is
// smooth.
double black_coverage(const linear_rgb& wanted) {
  constexpr double chromatic_density = 0.475;
  const double density = -std::log10(*std::max_element(wanted.begin(), wanted.end()));
  const double chromatic = density / std::pow(1 + std::pow(density / chromatic_density, 4), 0.25);
  const double black_light = std::pow(10, chromatic - density);
  return std::min((1 - black_light) / (1 - ink_colors[0][0]), 1.0);
}

// full_light, light_light: light that full coverage of the full and the light ink leaves in their main absorption band.
ink_pair split(double amount, double black, double full_light, double light_light) {
  const double absorbed = amount * (1 - full_light);
  const double light = (1 - black) * absorbed / (1 - light_light) * (1 - amount * amount * amount);
  const double full = (1 - (1 - absorbed) / (1 - light * (1 - light_light))) / (1 - full_light);
  return {full, light};
}

enum class light_inks { none, less_beside_black, everywhere };

// Inks for an amount of black and amounts of cyan, magenta and yellow, 0 ... 1 each.
ink_coverage inks_of(double black, const vector3& amounts, light_inks light) {
  if (light == light_inks::none) return {black, amounts[0], amounts[1], amounts[2], 0, 0};
  const double beside = light == light_inks::less_beside_black ? black : 0;
  const ink_pair cyan = split_cyan(amounts[0], beside), magenta = split_magenta(amounts[1], beside);
  return {black, cyan.full, magenta.full, amounts[2], cyan.light, magenta.light};
}

double squared(const vector3& v) { return v[0] * v[0] + v[1] * v[1] + v[2] * v[2]; }

double determinant(const matrix3& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

// Solves the symmetric system m x = v by Cramer's rule.
vector3 solve(const matrix3& m, const vector3& v) {
  const double whole = determinant(m);
  vector3 x;
  for (std::size_t i = 0; i < 3; ++i) {
    matrix3 replaced = m;
    replaced[i] = v;
    x[i] = determinant(replaced) / whole;
  }
  return x;
}

// Difference in sRGB levels between the print of some amounts and a wanted colour. On this scale the nearest printable
// colours of pure green, cyan, magenta and yellow are full inks, as usual in print, not pale ones.
class color_difference {
 public:
  color_difference(const linear_rgb& wanted, double black, light_inks light)
      : wanted_(srgb(wanted)), black_(black), light_(light) {}

  vector3 operator()(const vector3& amounts) const {
    const vector3 printed = srgb(print_color(inks_of(black_, amounts, light_)));
    return {printed[0] - wanted_[0], printed[1] - wanted_[1], printed[2] - wanted_[2]};
  }

  // The derivatives: row i by amount i. One-sided on the faces of the unit cube.
  matrix3 slopes(const vector3& amounts) const {
    constexpr double step = 1e-6;
    matrix3 result;
    for (std::size_t i = 0; i < 3; ++i) {
      vector3 low = amounts, high = amounts;
      low[i] = std::max(amounts[i] - step, 0.0);
      high[i] = std::min(amounts[i] + step, 1.0);
      const vector3 below = (*this)(low), above = (*this)(high);
      for (std::size_t r = 0; r < 3; ++r) result[i][r] = (above[r] - below[r]) / (high[i] - low[i]);
    }
    return result;
  }

 private:
  vector3 wanted_;
  double black_;
  light_inks light_;
};

// The amounts inside the unit cube with the least difference, by damped Gauss-Newton steps from `start` (K. Levenberg
// 1944, D. Marquardt 1963). A step that would leave the cube moves along its face.
vector3 least_difference(const color_difference& difference, const vector3& start) {
  vector3 at = start, off = difference(at);
  double damping = 1e-3;
  for (int round = 0; round < 100; ++round) {
    matrix3 slopes = difference.slopes(at);
    vector3 descent{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t r = 0; r < 3; ++r) descent[i] -= slopes[i][r] * off[r];
      const bool leaves_cube = (at[i] <= 0 && descent[i] < 0) || (at[i] >= 1 && descent[i] > 0);
      if (leaves_cube) {
        descent[i] = 0;
        slopes[i] = {};
      }
    }
    matrix3 normal{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t r = 0; r < 3; ++r) normal[i][j] += slopes[i][r] * slopes[j][r];
      }
      normal[i][i] += damping;
    }
    const vector3 step = solve(normal, descent);
    if (squared(step) < 1e-24) break;
    vector3 next;
    for (std::size_t i = 0; i < 3; ++i) next[i] = std::clamp(at[i] + step[i], 0.0, 1.0);
    const vector3 next_off = difference(next);
    if (squared(next_off) < squared(off)) {
      at = next;
      off = next_off;
      damping = std::max(damping / 10, 1e-12);
    } else {
      damping *= 10;
    }
  }
  return at;
}

// Amounts of cyan, magenta and yellow that come closest to a colour with a given black.
vector3 amounts_beside(double black, const linear_rgb& wanted) {
  vector3 start;
  for (std::size_t c = 0; c < start.size(); ++c) start[c] = std::clamp(1 - wanted[c], 0.02, 0.98);
  return least_difference({wanted, black, light_inks::none}, start);
}

double total(double black, const vector3& amounts) { return black + amounts[0] + amounts[1] + amounts[2]; }

}  // namespace

ink_pair split_cyan(double amount, double black) {  // cyan absorbs red
  return split(amount, black, ink_colors[1][0], ink_colors[4][0]);
}

ink_pair split_magenta(double amount, double black) {  // magenta absorbs green
  return split(amount, black, ink_colors[2][1], ink_colors[5][1]);
}

ink_coverage separate(const linear_rgb& image, bool with_light_inks) {
  linear_rgb wanted;  // black raised to the darkest print
  for (std::size_t c = 0; c < wanted.size(); ++c) wanted[c] = darkest_neutral + (1 - darkest_neutral) * image[c];
  double black = black_coverage(wanted);
  vector3 amounts = amounts_beside(black, wanted);
  if (total(black, amounts) > ink_limit) {  // more black replaces other inks: the least that keeps the limit
    double too_little = black, enough = 1;
    for (int halving = 0; halving < 20; ++halving) {
      black = (too_little + enough) / 2;
      (total(black, amounts_beside(black, wanted)) > ink_limit ? too_little : enough) = black;
    }
    black = enough;
    amounts = amounts_beside(black, wanted);
  }
  const ink_coverage full = inks_of(black, amounts, light_inks::none);
  if (!with_light_inks) return full;
  // Light inks absorb a little less outside their main band than full ones: match the print of the full inks. Colours
  // outside the gamut are mapped by then, so neighbouring colours stay neighbours.
  constexpr light_inks light = light_inks::less_beside_black;
  return inks_of(black, least_difference({print_color(full), black, light}, amounts), light);
}

ink_coverage separate_to_split(const linear_rgb& image) {
  const ink_coverage full = separate(image, false);
  const vector3 amounts =
      least_difference({print_color(full), full[0], light_inks::everywhere}, {full[1], full[2], full[3]});
  return inks_of(full[0], amounts, light_inks::none);
}

}  // namespace vrk::kit
