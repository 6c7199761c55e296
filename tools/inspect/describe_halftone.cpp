#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "kit/explain.h"
#include "kit/planes.h"
#include "kit/read_tables.h"
#include "tools/command_line/printable.h"
#include "tools/inspect/description.h"

namespace vrk::tool {
namespace {

template <class Number>
tree range_of(const std::vector<Number>& all) {
  const auto [smallest, largest] = std::minmax_element(all.begin(), all.end());
  return {{"smallest", *smallest}, {"largest", *largest}};
}

tree tile(unsigned width, unsigned height, unsigned column_shift, unsigned row_shift) {
  return {{"width", width},
          {"height", height},
          {"column shift per repeat", column_shift},
          {"row shift per repeat", row_shift}};
}

// What levels become: for each, the dots of a cell on average, and its cells if they are not too many.
tree describe_cells(const kit::edpr_table& table, const kit::ed_plane& plane) {
  std::vector<std::uint16_t> all;
  tree dots = tree::array();
  const unsigned columns = ((1U << plane.scale_x) - 1) << (4 - plane.scale_x);  // of a row of a cell
  const unsigned used = 0xFFFFU & ~(0xFFFFU >> (4 * plane.scale_y)) & columns * 0x1111U;
  for (const std::vector<std::uint16_t>& cells : plane.patterns) {
    unsigned sum = 0;
    for (const unsigned cell : cells) sum += unsigned(std::popcount(cell & used));
    dots.push_back(std::round(100.0 * sum / double(cells.size())) / 100);
    all.insert(all.end(), cells.begin(), cells.end());
  }
  return {{"dots across", plane.scale_x},
          {"lines", plane.scale_y},
          {"mean dots of each level", dots},
          {"cells of each level", numbers(all, std::size_t{table.pattern_width} * table.pattern_height)}};
}

tree describe_plane(const kit::edpr_table& table, const kit::ed_plane& plane) {
  tree told{
      {"levels", plane.level_values.size()}, {"level values", plane.level_values}, {"thresholds", plane.thresholds}};
  if (!table.extended()) told["bits"] = plane.bits;
  told["modulation"] = range_of(plane.modulation);
  told["modulation"]["rows"] =
      numbers(std::vector<int>(plane.modulation.begin(), plane.modulation.end()), table.matrix_width);
  if (table.extended()) told["dots"] = describe_cells(table, plane);
  return told;
}

// Of the quotients of amount and error, weighted so that large errors count most: they are rounded least.
double share_of(const kit::edtb_table& table, std::size_t column) {
  double amounts = 0, errors = 0;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const double error = double(row) - 255;
    amounts += error * table.rows[row][column];
    errors += error * error;
  }
  return errors == 0 ? 0 : std::round(10000 * amounts / errors) / 100;
}

tree describe_ranks(const kit::dither_plane& plane) {
  std::vector<std::uint16_t> ranks = plane.matrix;
  std::sort(ranks.begin(), ranks.end());
  const auto different = std::size_t(std::unique(ranks.begin(), ranks.end()) - ranks.begin());
  tree told{{"width", plane.width}, {"height", plane.height}, {"different ranks", different}};
  told.update(range_of(plane.matrix));
  told["rows"] = numbers(plane.matrix, plane.width);
  return told;
}

}  // namespace

tree describe_edpr(const table& image) {
  const kit::edpr_table table = kit::read_edpr(image.image);
  tree told{{"version", printable(table.version)},
            {"form", table.extended() ? "extended: pixels become cells of dots" : "packed lines"},
            {"modulation matrix",
             tile(table.matrix_width, table.matrix_height, table.matrix_column_shift, table.matrix_row_shift)}};
  if (table.extended()) {
    told["dot pattern, in cells"] =
        tile(table.pattern_width, table.pattern_height, table.pattern_column_shift, table.pattern_row_shift);
  }
  for (std::size_t p = 0; p < 6; ++p) {
    if (table.planes[p].level_values.empty()) continue;
    told["planes"][std::string(kit::table_plane_names[p])] = describe_plane(table, table.planes[p]);
  }
  return told;
}

tree describe_edtb(const table& image) {
  const kit::edtb_table table = kit::read_edtb(image.image);
  constexpr const char* columns[] = {"next pixel", "second next", "next line, two back", "next line, one back",
                                     "next line, below"};
  tree shares;
  for (std::size_t c = 0; c < std::size(columns); ++c) shares[columns[c]] = share_of(table, c);
  std::vector<int> left, amounts;  // what an error loses
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const kit::edtb_row& of_error = table.rows[row];
    left.push_back(int(row) - 255 - std::accumulate(of_error.begin(), of_error.begin() + 5, 0));
    amounts.insert(amounts.end(), of_error.begin(), of_error.end());
  }
  return {{"version", printable(table.version)},
          {"rows", table.rows.size()},
          {"columns", table.column_count},
          {"percent of the error", shares},
          {"error less its amounts", range_of(left)},
          {"amounts from error -255 on", numbers(amounts, kit::edtb_row().size())}};
}

tree describe_dith(const table& image) {
  const kit::dither_table table = kit::read_dither_table(image.image);
  const auto of_bytes = kit::dither_level_values(image.image, false),
             of_words = kit::dither_level_values(image.image, true);
  tree told{{"version", printable(table.version)}};
  for (std::size_t p = 0; p < 6; ++p) {
    const kit::dither_plane& plane = table.planes[p];
    if (plane.level_values.empty()) continue;
    const auto record =
        std::size_t(std::find(kit::table_position.begin(), kit::table_position.end(), p) - kit::table_position.begin());
    told["planes"][std::string(kit::table_plane_names[p])] = {{"levels", plane.level_values.size()},
                                                              {"bits", plane.bits},
                                                              {"level values", plane.level_values},
                                                              {"as taken with 8 bits", of_bytes[record]},
                                                              {"as taken with 16-bit samples", of_words[record]},
                                                              {"matrix", describe_ranks(plane)}};
  }
  return told;
}

}  // namespace vrk::tool
