#include "kit/presets.h"

#include "kit/color_grids.h"
#include "kit/dot_patterns.h"
#include "kit/level_sets.h"
#include "kit/planes.h"
#include "kit/separation.h"
#include "kit/srgb.h"
#include "kit/threshold_matrices.h"
#include "kit/tone_curves.h"

namespace vrk::kit {
namespace {

// Handles of 8-bit samples use the rank divided by four, and the number of ranks, truncated. So a small matrix is
// repeated in four tiles, with four times the rank, and keeps all its steps; a large one has more steps than 8-bit
// samples, and a quarter of a rank does not count.
threshold_matrix for_bytes(const threshold_matrix& matrix) {
  if (matrix.ranks.size() >= 16 * 256 || (matrix.ranks.size() >= 4 * 256 && matrix.ranks.size() % 4 == 0))
    return matrix;
  threshold_matrix tiles{2 * matrix.width, 2 * matrix.height, {}};
  for (unsigned y = 0; y < tiles.height; ++y) {
    for (unsigned x = 0; x < tiles.width; ++x) {
      tiles.ranks.push_back(std::uint16_t(4 * matrix.ranks[y % matrix.height * matrix.width + x % matrix.width]));
    }
  }
  return tiles;
}

}  // namespace

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

edpr_table cell_parameters(unsigned planes, unsigned scale_x, unsigned scale_y, unsigned levels,
                           const modulation& modulation) {
  edpr_table table = ed_parameters(planes, levels, modulation);
  table.version = "0020";
  const dot_cells dots = centred_dots(scale_x, scale_y, levels);
  const bool spread = planes > 1 && scale_x * scale_y > 1;
  for (std::size_t p = 0; p < planes; ++p) {
    ed_plane& plane = table.planes[table_position[p]];
    plane.bits = 1;  // of every dot
    plane.scale_x = scale_x;
    plane.scale_y = scale_y;
    plane.level_values = dots.level_values;
    plane.thresholds = halfway_thresholds(plane.level_values);
    if (spread) {
      cell_tile tile = spread_dots(scale_x, scale_y, dots.dots, unsigned(p));
      table.pattern_width = tile.width;
      table.pattern_height = tile.height;
      plane.patterns = std::move(tile.levels);
    } else {
      for (const std::uint16_t cell : dots.cells) plane.patterns.push_back({cell});
    }
  }
  return table;
}

dither_table dither_parameters(unsigned planes, unsigned levels, std::string_view matrix, bool in16) {
  matrix_set matrices = plane_matrices(matrix);
  dither_table table;
  for (std::size_t p = 0; p < planes; ++p) {
    if (!in16) matrices[p] = for_bytes(matrices[p]);
    table.planes[table_position[p]] = {.width = matrices[p].width,
                                       .height = matrices[p].height,
                                       .bits = bits_for_levels(levels),
                                       .level_values = even_levels(levels, in16 ? 1023 : 255),
                                       .matrix = matrices[p].ranks};
  }
  return table;
}

edtb_table ed_distribution(std::string_view filter, unsigned levels) {
  const error_filter* const found = find_error_filter(filter);
  return found == nullptr ? edtb_table{} : distribution_table(*found, levels);
}

modulation ed_modulation(std::string_view filter, unsigned levels) {
  return filter == "smooth" ? strong_noise_for(levels) : fine_noise_for(levels);
}

color_table ink_table(unsigned inks, unsigned points, grid_encoding encoding) {
  return {.encoding = encoding, .grid = ink_grid(inks, points)};
}

color_table split_ink_table(unsigned points) { return {.grid = split_ink_grid(points)}; }

curve_image black_ink_curve() {
  // Image black becomes full coverage, and levels between scale with it: the coverage is the light that is absorbed.
  return {.curves = {sampled_curve([](double level) { return 1 - srgb_to_linear(level); })}};
}

curve_image split_curves() {
  curve_image image{.version = "0020", .curve_count = 4, .output_count = 6};
  image.curves = {sampled_curve([](double x) { return split_cyan(x).full; }),
                  sampled_curve([](double x) { return split_cyan(x).light; }),
                  sampled_curve([](double x) { return split_magenta(x).full; }),
                  sampled_curve([](double x) { return split_magenta(x).light; }),
                  identity_curve(),   // Y
                  identity_curve()};  // K
  return image;
}

}  // namespace vrk::kit
