#include "kit/dot_patterns.h"

#include <algorithm>

#include "kit/level_sets.h"

namespace vrk::kit {

dot_cells centred_dots(unsigned scale_x, unsigned scale_y, unsigned levels) {
  struct dot {
    int distance;  // from the centre, squared, in half dots
    std::uint16_t bit;
  };
  std::vector<dot> order;
  for (int y = 0; y < int(scale_y); ++y) {
    for (int x = 0; x < int(scale_x); ++x) {
      const int dx = 2 * x + 1 - int(scale_x), dy = 2 * y + 1 - int(scale_y);
      order.push_back({dx * dx + dy * dy, std::uint16_t(0x8000 >> (4 * y + x))});
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

}  // namespace vrk::kit
