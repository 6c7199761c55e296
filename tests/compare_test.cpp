// The sheet on which people choose a filter or matrix by looking.
#include <gtest/gtest.h>

#include <set>

#include "kit/error_filters.h"
#include "kit/threshold_matrices.h"
#include "tests/scratch.h"
#include "tools/compare.h"

namespace {

using namespace vrk::tool;
using namespace vrk::test;
namespace kit = vrk::kit;

struct compare : scratch {};

struct rgb_picture {
  unsigned width, height;
  std::vector<std::uint8_t> samples;

  explicit rgb_picture(image_reader& from)
      : width(from.width()), height(from.height()), samples(from.line_bytes() * height) {
    for (unsigned y = 0; y < height; ++y) from.read_line(&samples[y * from.line_bytes()]);
  }
  std::array<std::uint8_t, 3> at(unsigned x, unsigned y) const {
    const std::uint8_t* const p = &samples[3 * (std::size_t{y} * width + x)];
    return {p[0], p[1], p[2]};
  }
};

TEST_F(compare, the_sheet_has_a_cell_of_other_dots_for_every_filter_and_matrix) {
  constexpr unsigned across = 40, down = 30, enlargement = 2;
  std::string page = "P5 40 30 255\n";
  for (unsigned i = 0; i < across * down; ++i) page += char(i * 255 / (across * down));
  const auto source = open_image(save("ramp.pgm", page));
  write_comparison(*source, {.inks = 1, .enlargement = enlargement}, path("compare.png"));

  // A cell is framed in one gray, a pixel wide.
  const auto drawn = open_image(path("compare.png"));
  const rgb_picture sheet(*drawn);
  constexpr std::array<std::uint8_t, 3> frame{205, 208, 212};
  constexpr unsigned wide = across * enlargement, tall = down * enlargement;
  const auto is_frame = [&](unsigned left, unsigned top) {
    for (unsigned x = 0; x < wide + 2; ++x) {
      if (sheet.at(left + x, top) != frame || sheet.at(left + x, top + tall + 1) != frame) return false;
    }
    return true;
  };
  std::set<std::vector<std::array<std::uint8_t, 3>>> cells;
  for (unsigned top = 0; top + tall + 2 <= sheet.height; ++top) {
    for (unsigned left = 0; left + wide + 2 <= sheet.width; ++left) {
      if (!is_frame(left, top)) continue;
      std::vector<std::array<std::uint8_t, 3>> dots;
      for (unsigned i = 0; i < wide * tall; ++i) dots.push_back(sheet.at(left + 1 + i % wide, top + 1 + i / wide));
      const std::set<std::array<std::uint8_t, 3>> colors(dots.begin(), dots.end());
      EXPECT_TRUE(cells.empty() ? colors.size() > 50 : colors.size() == 2) << "cell " << cells.size();
      EXPECT_TRUE(cells.insert(dots).second) << "cell " << cells.size() << " looks like another";
    }
  }
  EXPECT_EQ(cells.size(), 1 + kit::error_filters.size() + kit::matrix_names.size());
}

}  // namespace
