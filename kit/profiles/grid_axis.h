// Where the grid points of a link lie: close together where colours bend, far apart where they run straight.
#pragma once

#include "kit/color_table.h"
#include "kit/profiles/color_link.h"

namespace vrk::profiles {

// Positions on 8-bit levels, the same for R, G and B, so that grays run along the diagonals of cells and every ink
// keeps its direction between two grid points. Of all such axes, the one with the least squared error along lines
// through the cube. Levels at which a channel of the gray axis turns round become positions, the largest turns first,
// up to three fifths of them: more would leave too few for the colours. points: 2 ... 255.
kit::axis_positions axis_for(const color_link& link, unsigned points);

}  // namespace vrk::profiles
