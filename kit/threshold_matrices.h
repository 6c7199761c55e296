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

// The matrix shifted cyclically to the right and down.
threshold_matrix shifted(const threshold_matrix& matrix, unsigned right, unsigned down);

// A matrix for each plane in record order K, C, M, Y, fifth, sixth. Inks overlap as they would by chance: matrices that
// were the same, or of periods with a common divisor, would meet more or less often, and change colours.
using matrix_set = std::array<threshold_matrix, 6>;

// "bayer2", "bayer4", "bayer8", "bayer16" (kit/dispersed_dots.h); "clustered", small tiles of dots that grow, and
// "screens", with the usual angles and 7 pixels from dot to dot (kit/screens.h); "blue-noise" (kit/blue_noise.h).
inline constexpr std::array<std::string_view, 7> matrix_names{"bayer2",    "bayer4",  "bayer8",    "bayer16",
                                                              "clustered", "screens", "blue-noise"};

// The matrices are empty for a name that is not in the list.
matrix_set plane_matrices(std::string_view name);

}  // namespace vrk::kit
