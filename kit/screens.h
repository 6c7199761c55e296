// Screens: dots that grow around the points of a lattice of any angle and ruling.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "kit/threshold_matrices.h"

namespace vrk::kit {

// round: squares at half tone; ellipse: dots join to chains along the angle first; line: lines along the angle.
enum class spot_shape { round, ellipse, line };
inline constexpr std::array<std::string_view, 3> spot_names{"round", "ellipse", "line"};

// Waves across the page, in cycles per pixel to the right and down.
struct spatial_frequency {
  double right = 0, down = 0;

  double cycles() const;
};

// A lattice that a square tile repeats. Its dots lie where two waves peak, each of which has a whole number of cycles
// in the tile to the right and down.
struct screen {
  struct cycles {
    int right = 0, down = 0;
  };
  unsigned size = 1;  // of the tile, in pixels
  cycles along{1, 0}, across{0, 1};
  spot_shape spot = spot_shape::round;

  int dots() const { return along.right * across.down - along.down * across.right; }  // of a tile
  spatial_frequency frequency(const cycles& of) const { return {double(of.right) / size, double(of.down) / size}; }
};

// Angle counter-clockwise from a line to the right, in degrees, and lines per inch.
struct ruling {
  double angle = 0, lpi = 0;
};
ruling ruling_of(const screen& of, double dpi_x, double dpi_y);

// 45 degrees for K, 15 for C, 75 for M, 0 for Y, and 60 and 30 for the light inks, all of one ruling: 30 degrees apart
// where inks are strong, and nowhere less than 15.
std::array<ruling, 6> usual_rulings(double lpi);

// The screens that are nearest to these rulings, in tiles of 32 to 255 pixels: the smallest ones within a quarter of a
// degree and half a percent, or else the nearest. No two tiles have a common divisor, so that each pixel of one meets
// every pixel of another. lpi: a hundredth to half of the resolution.
std::vector<screen> nearest_screens(std::span<const ruling> asked, spot_shape spot, double dpi_x, double dpi_y);

// One screen's matrix. Each dot of the tile is cut out of the pixels for itself (a supercell), and dots grow in turns,
// a pixel at a time, so the tile has as many tones as pixels. T. M. Holladay, An optimum algorithm for halftone
// generation for displays and hard copies, Proc. SID 21, 1980.
threshold_matrix screen_matrix(const screen& of);

// A slow wave in the overlay of two planes: moire.
struct beat {
  spatial_frequency frequency{};
  double amplitude = 0;  // as a share of full ink
};

// The strongest wave slower than a third of the coarser ruling where both planes cover half of the paper. Takes the
// first three harmonics of either screen into account.
beat strongest_beat(const screen& a, const threshold_matrix& of_a, const screen& b, const threshold_matrix& of_b);

}  // namespace vrk::kit
