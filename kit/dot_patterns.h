// Dot patterns of extended error diffusion: which dots of a pixel's cell each level sets.
#pragma once

#include <cstdint>
#include <vector>

namespace vrk::kit {

struct dot_cells {
  std::vector<std::uint16_t> cells;         // one per level: dot row 0 in bits 15 ... 12, leftmost dot in the top one
  std::vector<std::uint16_t> level_values;  // the tone of as many dots, 10-bit scale
};

// Cells of scale_x (1, 2, 4) * scale_y (1 ... 4) dots that grow from the centre outward, evenly over the levels: the
// first has no dot, the last has all. Not more levels than dots and one make sense.
dot_cells centred_dots(unsigned scale_x, unsigned scale_y, unsigned levels);

// Where every plane's dots grow from the same place they fall onto each other, and a page comes out lighter than its
// inks ask for. So the cells of a plane are moved, around their own edges, by another amount in every pixel of a tile,
// each amount equally often. Then two planes share as many dots as chance has it, which is what colour tables count on.
constexpr unsigned scatter_width = 12, scatter_height = 16;
std::vector<std::uint16_t> scattered(std::uint16_t cell, unsigned scale_x, unsigned scale_y, unsigned plane);

}  // namespace vrk::kit
