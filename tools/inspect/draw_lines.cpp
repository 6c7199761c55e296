#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/inspect/colors.h"
#include "tools/inspect/curves.h"
#include "tools/inspect/line_drawing.h"

namespace vrk::tool {
namespace {

// Values at 0, 1, 2 ... along the x axis.
template <class Values>
named_line line_of(const std::string& name, const Values& values, double x_step = 1, double y_step = 1) {
  named_line line{name, {}};
  for (std::size_t i = 0; i < values.size(); ++i) line.points.push_back({double(i) * x_step, values[i] * y_step});
  return line;
}

drawing neutral_ramp(const table& image) {
  const colors_made by(image);
  const std::vector<std::vector<double>> ramps = by.neutral_ramps();
  std::vector<named_line> lines;
  for (std::size_t c = 0; c < ramps.size(); ++c) lines.push_back(line_of(by.channel_names()[c], ramps[c]));
  return line_drawing("neutral ramp", "% of full scale that grays become", even_axis("R = G = B", 0, 255, 5),
                      even_axis("", 0, 100, 5), std::move(lines));
}

}  // namespace

std::vector<drawing> draw_colors(const table& image) {
  std::vector<drawing> all{neutral_ramp(image)};
  if (kit::kind_of(image.image) == kit::table_kind::csc1 && kit::is_fixed_rule(image.image)) return all;
  const kit::color_table header = kit::read_color_table_header(image.image);
  std::vector<named_line> lines;
  for (std::size_t a = 0; a < 3; ++a) lines.push_back(line_of(std::string(1, "RGB"[a]), header.axes[a], 1, 1 / 257.0));
  const unsigned last = header.grid.points - 1;
  all.push_back(line_drawing("axes", std::to_string(header.grid.points) + " points per axis",
                             even_axis("number of the point", 0, last, last % 4 == 0 ? 4 : 1),
                             even_axis("level", 0, 255, 5), std::move(lines)));
  return all;
}

std::vector<drawing> draw_curves(const table& image) {
  const named_curves read = read_curves(image);
  std::vector<named_line> lines;
  for (std::size_t c = 0; c < read.names.size(); ++c) {
    lines.push_back(line_of(read.names[c], read.image.curves[c], 100 / 1023.0, 100 / 65535.0));
  }
  return {line_drawing("curves", "", even_axis("% in", 0, 100, 5), even_axis("% out", 0, 100, 5), std::move(lines))};
}

std::vector<drawing> draw_edtb(const table& image) {
  constexpr const char* columns[] = {"next", "second next", "two back", "one back", "below"};
  const kit::edtb_table table = kit::read_edtb(image.image);
  std::vector<named_line> lines;
  double most = 1;
  for (std::size_t c = 0; c < std::size(columns); ++c) {
    named_line line{columns[c], {}};
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      line.points.push_back({double(row) - 255, double(table.rows[row][c])});
      most = std::max(most, std::abs(line.points.back().y));
    }
    lines.push_back(std::move(line));
  }
  return {line_drawing("amounts", "what an error adds to its neighbours",
                       even_axis("error", -255, std::max(256.0, double(table.rows.size())) - 256, 2),
                       even_axis("amount", -most, most, 2), std::move(lines))};
}

}  // namespace vrk::tool
