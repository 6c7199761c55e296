#include "kit/dot_patterns.h"

#include <algorithm>
#include <numeric>

#include "kit/level_sets.h"
#include "kit/threshold_matrices.h"

namespace vrk::kit {
namespace {

constexpr unsigned dot_bit(unsigned x, unsigned y) { return 0x8000u >> (4 * y + x); }

std::uint16_t moved(std::uint16_t cell, unsigned scale_x, unsigned scale_y, unsigned right, unsigned down) {
  unsigned result = 0;
  for (unsigned y = 0; y < scale_y; ++y) {
    for (unsigned x = 0; x < scale_x; ++x) {
      if ((cell & dot_bit(x, y)) != 0) result |= dot_bit((x + right) % scale_x, (y + down) % scale_y);
    }
  }
  return std::uint16_t(result);
}

}  // namespace

dot_cells centred_dots(unsigned scale_x, unsigned scale_y, unsigned levels) {
  struct dot {
    int distance;  // from the centre, squared, in half dots
    std::uint16_t bit;
  };
  std::vector<dot> order;
  for (int y = 0; y < int(scale_y); ++y) {
    for (int x = 0; x < int(scale_x); ++x) {
      const int dx = 2 * x + 1 - int(scale_x), dy = 2 * y + 1 - int(scale_y);
      order.push_back({dx * dx + dy * dy, std::uint16_t(dot_bit(unsigned(x), unsigned(y)))});
    }
  }
  std::stable_sort(order.begin(), order.end(), [](const dot& a, const dot& b) { return a.distance < b.distance; });

  dot_cells result;
  const unsigned dots = unsigned(order.size());
  for (const unsigned count : even_levels(levels, dots)) {
    unsigned cell = 0;
    for (unsigned i = 0; i < count; ++i) cell |= order[i].bit;
    result.cells.push_back(std::uint16_t(cell));
    result.level_values.push_back(std::uint16_t((1023 * count + dots / 2) / dots));
  }
  return result;
}

std::vector<std::uint16_t> scattered(std::uint16_t cell, unsigned scale_x, unsigned scale_y, unsigned plane) {
  // The pixels of the tile in order of blue noise, so that pixels with the same amount are spread evenly.
  static const matrix_set noise = plane_matrices("blue-noise");
  constexpr unsigned pixels = scatter_width * scatter_height;
  std::vector<unsigned> order(pixels);
  std::iota(order.begin(), order.end(), 0u);
  const auto rank = [&](unsigned at) {
    return noise[plane].ranks[at / scatter_width * noise[plane].width + at % scatter_width];
  };
  std::sort(order.begin(), order.end(), [&](unsigned a, unsigned b) { return rank(a) < rank(b); });

  const unsigned amounts = scale_x * scale_y;
  std::vector<std::uint16_t> tile(pixels);
  for (unsigned i = 0; i < pixels; ++i) {
    const unsigned amount = i * amounts / pixels;
    tile[order[i]] = moved(cell, scale_x, scale_y, amount % scale_x, amount / scale_x);
  }
  return tile;
}

}  // namespace vrk::kit
