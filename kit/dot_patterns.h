// Dot patterns of extended error diffusion: which dots of a pixel's cell each level sets.
#pragma once

#include <cstdint>
#include <vector>

namespace vrk::kit {

struct dot_cells {
  std::vector<std::uint16_t> cells;         // one per level: dot row 0 in bits 15 ... 12, leftmost dot in the top one
  std::vector<std::uint16_t> dots;          // of each level
  std::vector<std::uint16_t> level_values;  // the tone of as many dots, 10-bit scale
};

// Cells of scale_x (1, 2, 4) * scale_y (1 ... 4) dots that grow from the centre outward, evenly over the levels: the
// first has no dot, the last has all. levels: 2 ... dots + 1.
dot_cells centred_dots(unsigned scale_x, unsigned scale_y, unsigned levels);

// If the dots of all planes grew from the same place they would print on top of each other, and a page would be lighter
// than its inks. So every plane has a tile of cells of its own, in which each cell takes its dots in another order. Two
// planes then share as many dots as by chance, which the colour tables assume. A cell's next dot is the one that lies
// furthest from all others, those of its neighbours included, by a Gaussian: levels are as smooth as cells allow.
struct cell_tile {
  unsigned width = 1, height = 1;                    // in cells
  std::vector<std::vector<std::uint16_t>> levels{};  // row by row
};

// dots: of a cell at each level, ascending.
cell_tile spread_dots(unsigned scale_x, unsigned scale_y, const std::vector<std::uint16_t>& dots, unsigned plane);

}  // namespace vrk::kit
