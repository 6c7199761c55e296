#include "tools/review/measure/overlay.h"

#include <cmath>

#include "kit/ink_model.h"

namespace vrk::tool {
namespace {

using triple = std::array<double, 3>;
using matrix = std::array<triple, 3>;

triple operator*(const matrix& m, const triple& v) {
  triple product{};
  for (std::size_t i = 0; i < 3; ++i) product[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return product;
}

triple cross(const triple& a, const triple& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

matrix inverse(const matrix& m) {
  const matrix columns{cross(m[1], m[2]), cross(m[2], m[0]), cross(m[0], m[1])};
  const double determinant = m[0][0] * columns[0][0] + m[0][1] * columns[0][1] + m[0][2] * columns[0][2];
  matrix out{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) out[i][j] = columns[j][i] / determinant;
  }
  return out;
}

// Linear sRGB to XYZ (IEC 61966-2-1), and XYZ to the opponent colours of A. B. Poirson and B. A. Wandell (1993).
constexpr matrix xyz_of_rgb{{{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
constexpr matrix opponent_of_xyz{{{0.279, 0.72, -0.107}, {-0.449, 0.29, -0.077}, {0.086, -0.59, 0.501}}};

using opponent_planes = std::array<ink_plane, 3>;

opponent_planes colors_of(std::span<const ink_plane> inks) {
  const unsigned width = inks[0].width, height = inks[0].height;
  const std::size_t pixels = inks[0].ink.size();
  opponent_planes out;
  for (ink_plane& plane : out) plane = {width, height, std::vector<float>(pixels)};
  std::array<double, 6> coverage{};
  for (std::size_t i = 0; i < pixels; ++i) {
    for (std::size_t p = 0; p < inks.size(); ++p) coverage[p] = double(inks[p].ink[i]);
    const triple color = opponent_of_xyz * (xyz_of_rgb * kit::print_color(std::span(coverage).first(inks.size())));
    for (std::size_t c = 0; c < 3; ++c) out[c].ink[i] = float(color[c]);
  }
  return out;
}

double lab_curve(double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; }

// L*, a*, b* relative to the white of paper.
class lab {
 public:
  triple operator()(const opponent_planes& planes, std::size_t i) const {
    const triple xyz = to_xyz_ * triple{double(planes[0].ink[i]), double(planes[1].ink[i]), double(planes[2].ink[i])};
    const double x = lab_curve(xyz[0] / white_[0]), y = lab_curve(xyz[1] / white_[1]),
                 z = lab_curve(xyz[2] / white_[2]);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
  }

 private:
  matrix to_xyz_ = inverse(opponent_of_xyz);
  triple white_ = xyz_of_rgb * triple{1, 1, 1};
};

}  // namespace

overlay_error measure_overlay(std::span<const ink_plane> dots, std::span<const ink_plane> inks, const viewing& view) {
  opponent_planes printed = colors_of(dots), asked = colors_of(inks);
  const std::array<transfer, 3> channels = opponent_channels(view);
  for (std::size_t c = 0; c < 3; ++c) {
    auto both = filtered(printed[c], asked[c], channels[c]);
    printed[c] = std::move(both[0]);
    asked[c] = std::move(both[1]);
  }
  const lab to_lab;
  overlay_error sum;
  for (std::size_t i = 0; i < printed[0].ink.size(); ++i) {
    const triple p = to_lab(printed, i), q = to_lab(asked, i);
    const double l = p[0] - q[0], a = p[1] - q[1], b = p[2] - q[2];
    sum.delta_e += std::sqrt(l * l + a * a + b * b);
    sum.lightness += l * l;
    sum.chroma += a * a + b * b;
    sum.mean_a += a;
    sum.mean_b += b;
  }
  const auto pixels = double(printed[0].ink.size());
  return {sum.delta_e / pixels, std::sqrt(sum.lightness / pixels), std::sqrt(sum.chroma / pixels), sum.mean_a / pixels,
          sum.mean_b / pixels};
}

}  // namespace vrk::tool
