// Threshold matrices: a rank, 0 ... width * height - 1, for every pixel of a tile. Pixels get dots in order of rank.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vrk::kit {

struct threshold_matrix {
  unsigned width = 0, height = 0;
  std::vector<std::uint16_t> ranks{};  // row by row
};

// Dispersed dots. size: 2, 4, 8 or 16.
// B. E. Bayer, An optimum method for two-level rendition of continuous-tone pictures, ICC 1973.
threshold_matrix bayer(unsigned size);

// Dots that grow around the points of a square lattice. The next point lies `along` pixels to the right and `across`
// down, so the screen's angle has the tangent across / along and its period is the root of along^2 + across^2 pixels.
// The smallest tile that repeats it has (along^2 + across^2) / gcd(along, across) pixels each way. It is doubled until
// it has 256 ranks, in which neighbouring dots grow in turns, so that no tone is lost. T. M. Holladay, An optimum
// algorithm for halftone generation for displays and hard copies, Proc. SID 21, 1980.
threshold_matrix clustered_dot(unsigned along, unsigned across);

// Blue noise of 64 x 64 pixels, the same on every call.
// R. Ulichney, The void-and-cluster method for dither array generation, SPIE 1913, 1993.
const threshold_matrix& blue_noise();

// The matrix shifted cyclically to the right and down.
threshold_matrix shifted(const threshold_matrix& matrix, unsigned right, unsigned down);

// A matrix for each plane in record order K, C, M, Y, fifth, sixth, so that not all inks print on the same pixels:
// shifts of one matrix, or screens of different angles for K (45 degrees), C (16), M (74) and Y (0).
using matrix_set = std::array<threshold_matrix, 6>;

// "bayer2", "bayer4", "bayer8", "bayer16", "clustered" (45 degrees for all), "screens", "blue-noise".
inline constexpr std::array<std::string_view, 7> matrix_names{"bayer2",    "bayer4",  "bayer8",    "bayer16",
                                                              "clustered", "screens", "blue-noise"};

// The matrices are empty for a name that is not in the list.
matrix_set plane_matrices(std::string_view name);

}  // namespace vrk::kit
