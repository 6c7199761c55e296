#include "kit/presets.h"

#include "kit/error_filters.h"
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

}  // namespace vrk::kit
