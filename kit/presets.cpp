#include "kit/presets.h"

#include <cmath>

#include "kit/color_grids.h"
#include "kit/error_filters.h"
#include "kit/ink_model.h"
#include "kit/level_sets.h"
#include "kit/planes.h"

namespace vrk::kit {

edpr_table ed_parameters(unsigned planes, unsigned levels, const modulation& modulation) {
  edpr_table table;
  table.matrix_width = modulation.width;
  table.matrix_height = modulation.height;
  table.matrix_column_shift = modulation.column_shift;
  table.matrix_row_shift = modulation.row_shift;
  for (std::size_t p = 0; p < planes; ++p) {
    ed_plane& plane = table.planes[table_position[p]];
    plane.bits = bits_for_levels(levels);
    plane.level_values = even_levels(levels);
    plane.thresholds = halfway_thresholds(plane.level_values);
    plane.modulation = modulation.planes[p];
  }
  return table;
}

edtb_table ed_distribution(std::string_view filter) {
  const error_filter* const found = find_error_filter(filter);
  return found == nullptr ? edtb_table{} : distribution_table(*found);
}

color_table ink_table(unsigned inks, unsigned points, grid_encoding encoding) {
  return {.encoding = encoding, .grid = ink_grid(inks, points)};
}

curve_image black_ink_curve() {
  // Image black is as dark as the ink; everything between scales with it, so that the coverage is what light is
  // missing.
  curve coverage;
  for (std::size_t i = 0; i < coverage.size(); ++i) {
    coverage[i] = std::uint16_t(std::lround(65535 * (1 - srgb_to_linear(double(i) / 1023))));
  }
  return {.curves = {coverage}};
}

}  // namespace vrk::kit
