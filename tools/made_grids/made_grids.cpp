#include "tools/made_grids/made_grids.h"

namespace vrk::tool {
namespace {

#include "made_grids.inc"

template <std::size_t samples>
kit::color_grid grid_of(const std::uint16_t (&made)[samples], unsigned channels) {
  return {.channels = channels, .samples = {made, made + samples}};
}

}  // namespace

kit::color_grid made_ink_grid(unsigned inks) { return inks == 6 ? grid_of(six_inks, 6) : grid_of(four_inks, 4); }
kit::color_grid made_split_ink_grid() { return grid_of(inks_to_split, 4); }

}  // namespace vrk::tool
