#include <algorithm>
#include <cmath>

#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/command_line/printable.h"
#include "tools/inspect/colors.h"
#include "tools/inspect/description.h"

namespace vrk::tool {
namespace {

constexpr const char* axis_names[] = {"R", "G", "B"};

struct rule {
  const char *name, *meaning;
};
constexpr rule rules[] = {{"thrh", "RGB as it is"},
                          {"gray", "one sample: gray, 0.30 R + 0.60 G + 0.10 B"},
                          {"blck", "one sample: full scale for white, else 0"},
                          {"sold", "RGB, each sample brought down to 0, 1/4, 1/2 or full scale"}};

std::string name_of(kit::grid_encoding encoding) {
  switch (encoding) {
    case kit::grid_encoding::raw16:
      return "0: samples of 16 bits";
    case kit::grid_encoding::packed12:
      return "1: samples of 12 bits, packed";
    case kit::grid_encoding::packed10:
      return "2: samples of 10 bits, packed";
    case kit::grid_encoding::raw8:
      return "3: samples of 8 bits";
    case kit::grid_encoding::delta10:
      return "6: differences of 10-bit samples";
    default:
      return "7: differences of 8-bit samples";
  }
}

tree by_channel(const colors_made& by, const std::vector<double>& pixel) {
  tree told;
  for (std::size_t c = 0; c < pixel.size(); ++c) told[by.channel_names()[c]] = pixel[c];
  return told;
}

tree describe_corners(const colors_made& by) {
  constexpr struct {
    const char* name;
    std::uint16_t r, g, b;
  } corners[] = {{"white", 65535, 65535, 65535}, {"black", 0, 0, 0},         {"red", 65535, 0, 0},
                 {"green", 0, 65535, 0},         {"blue", 0, 0, 65535},      {"cyan", 0, 65535, 65535},
                 {"magenta", 65535, 0, 65535},   {"yellow", 65535, 65535, 0}};
  tree told;
  for (const auto& [name, r, g, b] : corners) told[name] = by_channel(by, by.of(std::vector{r, g, b}));
  return told;
}

tree describe_grays(const colors_made& by) {
  tree told;
  const std::vector<std::vector<double>> ramps = by.neutral_ramps();
  for (std::size_t c = 0; c < ramps.size(); ++c) told[by.channel_names()[c]] = ramps[c];
  return told;
}

// Every point of the grid.
tree describe_points(const colors_made& by, const kit::color_table& header) {
  const auto& [r_axis, g_axis, b_axis] = header.axes;
  std::vector<double> smallest(by.channel_names().size(), 100), largest(smallest.size(), 0);
  double most = 0;
  std::vector<std::uint16_t> row;
  for (const std::uint16_t r : r_axis) {
    for (const std::uint16_t g : g_axis) {
      row.clear();
      for (const std::uint16_t b : b_axis) row.insert(row.end(), {r, g, b});
      const std::vector<double> made = by.of(row);
      for (auto pixel = made.begin(); pixel != made.end(); pixel += std::ptrdiff_t(largest.size())) {
        double sum = 0;
        for (std::size_t c = 0; c < largest.size(); ++c) {
          smallest[c] = std::min(smallest[c], pixel[std::ptrdiff_t(c)]);
          largest[c] = std::max(largest[c], pixel[std::ptrdiff_t(c)]);
          sum += pixel[std::ptrdiff_t(c)];
        }
        most = std::max(most, sum);
      }
    }
  }
  tree told{{"smallest", by_channel(by, smallest)}, {"largest", by_channel(by, largest)}};
  if (largest.size() > 3) told["most ink of a point"] = std::round(100 * most) / 100;
  return told;
}

tree describe_grid(const table& image) {
  const kit::color_table header = kit::read_color_table_header(image.image);
  const colors_made by(image);
  tree told{{"version", printable(header.version)},
            {"input channels", header.in_channels},
            {"output channels", header.grid.channels},
            {"grid points per axis", header.grid.points},
            {"grid encoding", name_of(header.encoding)}};
  for (std::size_t a = 0; a < 3; ++a) told["axes"][axis_names[a]] = header.axes[a];
  told["percent of full scale"] = {{"corners", describe_corners(by)},
                                   {"grays 0 to 255", describe_grays(by)},
                                   {"grid points", describe_points(by, header)}};
  return told;
}

}  // namespace

tree describe_csc1(const table& image) {
  for (const auto& [name, meaning] : rules) {
    if (std::equal(name, name + 4, image.image.begin() + 4)) return {{"rule", name}, {"gives", meaning}};
  }
  return describe_grid(image);
}

tree describe_csc2(const table& image) { return describe_grid(image); }

}  // namespace vrk::tool
