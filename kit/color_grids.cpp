#include "kit/color_grids.h"

#include <algorithm>
#include <cmath>

#include "kit/ink_model.h"
#include "kit/separation.h"
#include "kit/srgb.h"

namespace vrk::kit {
namespace {

std::uint16_t sample16(double part) { return std::uint16_t(std::lround(std::clamp(part, 0.0, 1.0) * 65535)); }

// A grid of the samples that color(r, g, b) returns for every point; r, g, b are 0 ... 65535.
template <class Color>
color_grid sampled_grid(unsigned points, unsigned channels, Color color) {
  color_grid grid{.points = points, .channels = channels};
  const axis_positions axis = even_axis(points);
  for (const unsigned r : axis) {
    for (const unsigned g : axis) {
      for (const unsigned b : axis) {
        const auto samples = color(r, g, b);
        grid.samples.insert(grid.samples.end(), samples.begin(), samples.begin() + channels);
      }
    }
  }
  return grid;
}

linear_rgb linear(unsigned r, unsigned g, unsigned b) {
  return {srgb_to_linear(r / 65535.0), srgb_to_linear(g / 65535.0), srgb_to_linear(b / 65535.0)};
}

// coverage_of: returns the inks of a colour in linear light
template <class Separation>
color_grid separated_grid(unsigned points, unsigned inks, const Separation& coverage_of) {
  return sampled_grid(points, inks, [&](unsigned r, unsigned g, unsigned b) {
    const ink_coverage coverage = coverage_of(linear(r, g, b));
    std::array<std::uint16_t, 6> out;
    for (std::size_t ink = 0; ink < out.size(); ++ink) out[ink] = sample16(coverage[ink]);
    return out;
  });
}

}  // namespace

color_grid identity_grid(unsigned points) {
  return sampled_grid(points, 3, [](unsigned r, unsigned g, unsigned b) {
    return std::array{std::uint16_t(r), std::uint16_t(g), std::uint16_t(b)};
  });
}

color_grid matrix_grid(const color_matrix& matrix, unsigned points) {
  return sampled_grid(points, 3, [&](unsigned r, unsigned g, unsigned b) {
    const linear_rgb in = linear(r, g, b);
    std::array<std::uint16_t, 3> out;
    for (std::size_t c = 0; c < out.size(); ++c) {
      const double light = matrix[c][0] * in[0] + matrix[c][1] * in[1] + matrix[c][2] * in[2];
      out[c] = sample16(linear_to_srgb(std::clamp(light, 0.0, 1.0)));
    }
    return out;
  });
}

color_matrix saturation_matrix(double saturation) {
  constexpr linear_rgb luminance{0.2126, 0.7152, 0.0722};
  color_matrix matrix;
  for (std::size_t out = 0; out < 3; ++out) {
    for (std::size_t in = 0; in < 3; ++in) {
      matrix[out][in] = (1 - saturation) * luminance[in] + (out == in ? saturation : 0);
    }
  }
  return matrix;
}

color_grid ink_grid(unsigned inks, unsigned points) {
  return separated_grid(points, inks, [&](const linear_rgb& color) { return separate(color, inks == 6); });
}

color_grid split_ink_grid(unsigned points) { return separated_grid(points, 4, separate_to_split); }

}  // namespace vrk::kit
