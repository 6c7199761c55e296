#include "kit/threshold_matrices.h"

#include <algorithm>
#include <string>

#include "kit/blue_noise.h"
#include "kit/dispersed_dots.h"
#include "kit/screens.h"

namespace vrk::kit {
namespace {

matrix_set matrices_of(const std::array<screen, 6>& screens) {
  matrix_set set;
  std::transform(screens.begin(), screens.end(), set.begin(), screen_matrix);
  return set;
}

}  // namespace

threshold_matrix shifted(const threshold_matrix& matrix, unsigned right, unsigned down) {
  const unsigned width = matrix.width, height = matrix.height;
  threshold_matrix moved = matrix;
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      moved.ranks[(y + down) % height * width + (x + right) % width] = matrix.ranks[y * width + x];
    }
  }
  return moved;
}

matrix_set plane_matrices(std::string_view name) {
  if (name == "blue-noise") return shifted_blue_noise();
  if (name == "clustered") {  // from dot to dot 4, 5, 2, 5, 6 and 4 pixels to the right and 4, 2, 7, 0, 1 and 5 up
    return matrices_of({{{16, {2, -2}, {2, 2}},
                         {29, {5, -2}, {2, 5}},
                         {53, {2, -7}, {7, 2}},
                         {25, {5, 0}, {0, 5}},
                         {37, {6, -1}, {1, 6}},
                         {41, {4, -5}, {5, 4}}}});
  }
  if (name == "screens") {  // 45, 14, 74, 0, 59 and 31 degrees, 7 pixels from dot to dot
    return matrices_of({{{20, {2, -2}, {2, 2}},
                         {29, {4, -1}, {1, 4}},
                         {53, {2, -7}, {7, 2}},
                         {21, {3, 0}, {0, 3}},
                         {41, {3, -5}, {5, 3}},
                         {43, {5, -3}, {3, 5}}}});
  }
  for (const unsigned size : {2u, 4u, 8u, 16u}) {
    if (name == "bayer" + std::to_string(size)) return bayer_planes(size);
  }
  return {};
}

}  // namespace vrk::kit
