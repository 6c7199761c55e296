#include <gtest/gtest.h>

#include "kit/blob.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dither_table.h"
#include "kit/ed_tables.h"
#include "kit/planes.h"

namespace {

using namespace vrk::kit;

// Samples of `bits` bits of one plane, on the grid's 16-bit scale.
color_grid plane_grid(unsigned bits, std::vector<std::uint16_t> samples) {
  for (std::uint16_t& s : samples) s = std::uint16_t(s << (16 - bits));
  return {.points = 1, .channels = 1, .samples = std::move(samples)};
}

bytes grid_bytes(const color_table& table) {
  const bytes all = table.encode();
  return bytes(all.begin() + 12 + 6 * table.grid.points, all.end());
}

TEST(kit, delta8_stream_takes_the_shortest_codes) {
  const color_table table{.encoding = grid_encoding::delta8, .grid = plane_grid(8, {100, 100, 90, 120, 50})};
  EXPECT_EQ(grid_bytes(table), (bytes{0x64, 0x1D, 0x31, 0x1A, 0b00110'000}));
}

TEST(kit, delta10_stream_takes_the_shortest_codes) {
  const color_table table{.encoding = grid_encoding::delta10, .grid = plane_grid(10, {400, 400, 380, 600, 100})};
  EXPECT_EQ(grid_bytes(table), (bytes{0x64, 0x1B, 0x40, 0xC9, 0x05, 0xF4}));
}

color_grid counting_grid(unsigned points, unsigned channels) {
  color_grid grid{.points = points, .channels = channels, .samples = {}};
  for (unsigned i = 0; i < points * points * points * channels; ++i) grid.samples.push_back(std::uint16_t(i << 8));
  return grid;
}

TEST(kit, packed_grids_carry_their_whole_tail) {
  struct {
    unsigned channels;
    grid_encoding encoding;
    std::size_t size;
  } const cases[] = {
      {3, grid_encoding::packed12, 117 + 6}, {3, grid_encoding::packed10, 90 + 12},
      {4, grid_encoding::packed12, 27 * 6},  {4, grid_encoding::packed10, 27 * 5},
      {6, grid_encoding::packed12, 27 * 9},  {6, grid_encoding::packed10, 13 * 15 + 8},
  };
  for (const auto& c : cases) {
    const color_table table{.encoding = c.encoding, .grid = counting_grid(3, c.channels)};
    EXPECT_EQ(grid_bytes(table).size(), c.size) << c.channels << " channels, encoding " << int(c.encoding);
  }
}

TEST(kit, ink_grids_are_stored_in_table_order) {
  color_table table{.encoding = grid_encoding::raw8, .grid = {.points = 1, .channels = 4, .samples = {}}};
  table.grid.samples = {40 << 8, 10 << 8, 20 << 8, 30 << 8};  // K, C, M, Y
  EXPECT_EQ(grid_bytes(table), (bytes{10, 20, 30, 40}));
  table.grid.channels = 6;
  table.grid.samples = {6 << 8, 1 << 8, 3 << 8, 5 << 8, 2 << 8, 4 << 8};  // K, C, M, Y, fifth, sixth
  EXPECT_EQ(grid_bytes(table), (bytes{1, 2, 3, 4, 5, 6}));
}

TEST(kit, blob_directory_points_at_the_data) {
  const bytes image = blob{.entries = {{.tag = "HT", .data = {1, 2, 3}}, {.tag = "HC  ", .data = {4}}}}.encode();
  ASSERT_EQ(image.size(), 40u + 2 * 12 + 4);
  EXPECT_EQ(image[31], 0x1A);
  EXPECT_EQ(image[33], 2);
  EXPECT_EQ((bytes{image.begin() + 40, image.begin() + 64}),
            (bytes{'H', 'T', ' ', ' ', 0, 0, 0, 64, 0, 0, 0, 3, 'H', 'C', ' ', ' ', 0, 0, 0, 67, 0, 0, 0, 1}));
}

}  // namespace
