// The kit's ink grids, made when the program was built: to compute one takes longer than all else that comes before the
// first line of a page.
#pragma once

#include "kit/color_grids.h"

namespace vrk::tool {

kit::color_grid made_ink_grid(unsigned inks);  // as kit::ink_grid
kit::color_grid made_split_ink_grid();         // as kit::split_ink_grid

}  // namespace vrk::tool
