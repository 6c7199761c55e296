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

}  // namespace vrk::kit
