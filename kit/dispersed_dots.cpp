#include "kit/dispersed_dots.h"

#include <cmath>
#include <utility>

namespace vrk::kit {
namespace {

// What a dot adds to the crowding of each pixel, by its distance right and down: the third power of nearness, with the
// repeats of the tile nearby, in whole numbers, so that sums do not depend on the order of addition.
std::vector<std::int64_t> crowding_around(int size, const nearness& by) {
  std::vector<std::int64_t> crowding(std::size_t(size * size));
  for (int at = 1; at < size * size; ++at) {
    double sum = 0;
    for (int y = at / size - 2 * size; y <= 2 * size + at / size; y += size) {
      for (int x = at % size - 2 * size; x <= 2 * size + at % size; x += size) {
        const double square = (by.xx * x * x + by.yy * y * y + by.xy * x * y) / 100.0;
        sum += 1 / (square * std::sqrt(square));
      }
    }
    crowding[std::size_t(at)] = std::llround(sum * (1 << 24));
  }
  return crowding;
}

}  // namespace

threshold_matrix bayer(unsigned size) {
  threshold_matrix matrix{1, 1, {0}};
  while (matrix.width < size) {
    const unsigned n = matrix.width;
    threshold_matrix next{2 * n, 2 * n, std::vector<std::uint16_t>(4 * n * n)};
    constexpr unsigned quarter[2][2] = {{0, 2}, {3, 1}};
    for (unsigned y = 0; y < 2 * n; ++y) {
      for (unsigned x = 0; x < 2 * n; ++x) {
        next.ranks[y * 2 * n + x] = std::uint16_t(4 * matrix.ranks[y % n * n + x % n] + quarter[y / n][x / n]);
      }
    }
    matrix = std::move(next);
  }
  return matrix;
}

threshold_matrix dispersed_dots(unsigned size, const nearness& by) {
  const std::vector<std::int64_t> around = crowding_around(int(size), by);
  const unsigned pixels = size * size, unset = pixels;
  std::vector<std::int64_t> crowding(pixels);
  threshold_matrix matrix{size, size, std::vector<std::uint16_t>(pixels, std::uint16_t(unset))};
  for (unsigned rank = 0; rank < pixels; ++rank) {
    unsigned gap = unset;
    for (unsigned at = 0; at < pixels; ++at) {
      if (matrix.ranks[at] == unset && (gap == unset || crowding[at] < crowding[gap])) gap = at;
    }
    matrix.ranks[gap] = std::uint16_t(rank);
    for (unsigned at = 0; at < pixels; ++at) {
      const unsigned right = (at % size + size - gap % size) % size, down = (at / size + size - gap / size) % size;
      crowding[at] += around[down * size + right];
    }
  }
  return matrix;
}

matrix_set bayer_planes(unsigned size) {
  struct tile {
    unsigned size;
    nearness by;
  };
  // C, M, Y, fifth, sixth.
  using tiles = std::array<tile, 5>;
  static constexpr tiles of_2{
      {{3, {68, 68, -65}}, {5, {100, 35, 0}}, {7, {87, 48, -52}}, {11, {75, 75, 50}}, {13, {48, 87, 52}}}};
  static constexpr tiles of_4{
      {{5, {76, 94, -24}}, {7, {87, 48, -52}}, {9, {68, 68, 65}}, {11, {94, 76, 24}}, {13, {48, 87, -52}}}};
  static constexpr tiles of_8{
      {{9, {68, 68, -65}}, {7, {48, 87, 52}}, {11, {76, 94, -24}}, {13, {87, 48, 52}}, {17, {75, 75, 50}}}};
  static constexpr tiles of_16{
      {{17, {75, 75, 50}}, {15, {68, 68, -65}}, {13, {85, 85, 30}}, {19, {48, 87, -52}}, {11, {87, 48, 52}}}};
  matrix_set set{bayer(size)};
  const tiles& others = size == 2 ? of_2 : size == 4 ? of_4 : size == 8 ? of_8 : of_16;
  for (std::size_t p = 0; p < others.size(); ++p) set[p + 1] = dispersed_dots(others[p].size, others[p].by);
  return set;
}

}  // namespace vrk::kit
