// The sheet on which people choose a filter or matrix by looking.
#include <gtest/gtest.h>

#include <set>

#include "kit/error_filters.h"
#include "kit/threshold_matrices.h"
#include "tests/tools/scratch.h"
#include "tools/review/compare.h"

namespace {

using namespace vrk::tool;
using namespace vrk::test;
namespace kit = vrk::kit;

struct compare : scratch {};

using color = std::array<std::uint8_t, 3>;

TEST_F(compare, the_sheet_has_a_cell_of_other_dots_for_every_filter_and_matrix) {
  constexpr unsigned across = 40, down = 30, enlargement = 2;
  std::string page = "P5 40 30 255\n";
  for (unsigned i = 0; i < across * down; ++i) page += char(i * 255 / (across * down));
  const auto source = open_image(save("ramp.pgm", page));
  output_set files(dir_);
  write_comparison(*source, {.inks = 1, .enlargement = enlargement}, files.add("compare.png"));
  files.keep();

  // A cell is framed in one gray, a pixel wide.
  const auto drawn = open_image(path("compare.png"));
  const unsigned width = drawn->width(), height = drawn->height();
  std::vector<color> sheet(width * height);
  for (unsigned y = 0; y < height; ++y) drawn->read_line(&sheet[y * width]);
  const auto at = [&](unsigned x, unsigned y) { return sheet[y * width + x]; };
  constexpr color frame{205, 208, 212};
  constexpr unsigned wide = across * enlargement, tall = down * enlargement;
  const auto is_frame = [&](unsigned left, unsigned top) {
    for (unsigned x = 0; x < wide + 2; ++x) {
      if (at(left + x, top) != frame || at(left + x, top + tall + 1) != frame) return false;
    }
    return true;
  };
  std::set<std::vector<color>> cells;
  for (unsigned top = 0; top + tall + 2 <= height; ++top) {
    for (unsigned left = 0; left + wide + 2 <= width; ++left) {
      if (!is_frame(left, top)) continue;
      std::vector<color> dots;
      for (unsigned i = 0; i < wide * tall; ++i) dots.push_back(at(left + 1 + i % wide, top + 1 + i / wide));
      const std::set<color> colors(dots.begin(), dots.end());
      EXPECT_TRUE(cells.empty() ? colors.size() > 50 : colors.size() == 2) << "cell " << cells.size();
      EXPECT_TRUE(cells.insert(dots).second) << "cell " << cells.size() << " looks like another";
    }
  }
  EXPECT_EQ(cells.size(), 1 + kit::error_filters.size() + kit::matrix_names.size());
}

}  // namespace
