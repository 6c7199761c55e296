#include <gtest/gtest.h>

#include <numeric>

#include "kit/curve_image.h"
#include "tests/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::color_table;
using vrk::kit::curve_image;

curve_image random_curve(unsigned seed = 1) {
  std::mt19937 random(seed);
  curve_image image;
  image.curves.resize(1);
  for (std::uint16_t& entry : image.curves[0]) entry = std::uint16_t(random());
  return image;
}

TEST(csc2, sizes_and_hints) {
  const struct {
    bytes image;
    unsigned input_samples;
    std::uint32_t flags, size, hint;
  } cases[] = {
      {random_table(4, 17, 1).encode(), 3, 0, 21389, 0},
      {random_table(4, 17, 1).encode(), 1, 4, 52612, 0x14},
      {random_table(6, 17, 1).encode(), 3, 0x20, 31215, 0},
      {random_table(6, 17, 1).encode(), 0x103, 1, 72264, 0x11},
      {random_curve().encode(), 1, 0, 703, 0},
      {random_curve().encode(), 1, 0x34, 959, 0x14},
      {random_curve().encode(), 0x201, 1, 65983, 0x11},
      {random_curve().encode(), 1, 5, 131519, 0x15},
  };
  for (const auto& c : cases) {
    fenced_block memory(c.size);
    EXPECT_EQ(create_csc(c.image, 4, c.input_samples, c.flags, nullptr), c.size);
    EXPECT_EQ(create_csc(c.image, 4, c.input_samples, c.flags, memory.data()), c.size);
    EXPECT_EQ(vrk_query_csc2_hint(memory.data()), c.hint);
    EXPECT_TRUE(memory.fences_intact());
  }
}

TEST(csc2, grids_take_one_or_three_input_samples_and_curves_one) {
  for (const unsigned samples : {0u, 1u, 2u, 3u, 4u, 0x101u, 0x103u, 0x200u}) {
    const unsigned low = samples & 0xFF;
    EXPECT_EQ(create_csc(random_table(4, 2, 1).encode(), 4, samples, 0, nullptr) != 0, low == 1 || low == 3);
    EXPECT_EQ(create_csc(random_curve().encode(), 4, samples, 0, nullptr) != 0, low == 1);
  }
}

TEST(csc2, curves_are_refused_by_their_header) {
  const auto expect = [](bool accepted, auto change) {
    curve_image image = random_curve();
    change(image);
    fenced_block memory(703);
    EXPECT_EQ(create_csc(image.encode(), 4, 1, 0, nullptr) != 0, accepted);
    EXPECT_EQ(create_csc(image.encode(), 4, 1, 0, memory.data()) != 0, accepted);
    EXPECT_NE(memory.untouched(), accepted);
  };
  expect(true, [](auto& c) { c.version = "001z"; });
  expect(true, [](auto& c) { c.output_count = 9; });
  expect(false, [](auto& c) { c.version = "002z"; });
  expect(false, [](auto& c) { c.magic = "tld1"; });
  expect(false, [](auto& c) { c.curve_count = 2; });
  expect(false, [](auto& c) { c.entries = 512; });
  expect(false, [](auto& c) { c.entries = 0x0004; });
  EXPECT_EQ(vrk_create_csc2(100, nullptr, 1, 0, nullptr), 0u);
}

TEST(csc2, known_values) {
  color_table table;
  table.axes.fill({0x0000, 0xFF00});
  table.grid = {.points = 2, .channels = 4, .samples = {}};
  for (const int v : {0,  0,   0, 0, 30, 0,   0, 50, 20, 0,   100, 0, 60,  0,   100, 50,
                      10, 200, 0, 0, 50, 200, 0, 50, 40, 200, 100, 0, 250, 255, 255, 255}) {
    table.grid.samples.push_back(std::uint16_t(v * 257));
  }
  EXPECT_EQ(converter(table.encode(), 0).run({100, 50, 25, 25, 50, 100, 255, 255, 255}, 3, 4),
            (samples{29, 83, 34, 23, 35, 23, 34, 38, 250, 255, 255, 255}));
}

// From the table's bytes: C, M, Y, K and C, fifth, M, sixth, Y, K.
TEST(csc2, table_samples_are_brought_into_plane_order) {
  for (const unsigned channels : {4u, 6u}) {
    bytes image = random_table(channels, 2, 1).encode();
    image[11] = 3;  // raw8
    image.resize(12 + 6 * 2 + 8 * channels);
    std::iota(image.begin() + 12 + 6 * 2, image.end(), std::uint8_t{1});
    const samples expected = channels == 4 ? samples{4, 1, 2, 3} : samples{6, 1, 3, 5, 2, 4};
    EXPECT_EQ(converter(image, 0).run({0, 0, 0}, 1, channels), expected);
  }
}

// All levels against straight lines drawn between the neighbouring entries.
TEST(csc2, curves) {
  for (const std::uint32_t flags : {0u, VRK_OUT16, VRK_IN16, VRK_IN16 | VRK_OUT16}) {
    const curve_image image = random_curve(flags);
    const auto& c = image.curves[0];
    samples in(flags & VRK_IN16 ? 65536 : 256), expected;
    std::iota(in.begin(), in.end(), std::uint16_t{0});
    for (const unsigned level : in) {
      unsigned value;
      if (flags & VRK_IN16) {
        unsigned n = level / 64;  // the entry at or below the level
        const auto at = [](unsigned entry) { return entry * 64 + entry / 16; };
        if (at(n) > level) --n;
        const double slope = n == 1023 ? 0 : (double(c[n + 1]) - c[n]) / (at(n + 1) - at(n));
        value = unsigned((level - at(n)) * slope + c[n] + (level == at(n) ? 0 : 0.5));
      } else {
        value = c[level << 2 | level >> 6];
      }
      expected.push_back(std::uint16_t(flags & VRK_OUT16 ? value : value >> 8));
    }
    EXPECT_EQ(converter(image.encode(), flags, 1).run(in, unsigned(in.size()), 1), expected) << flags;
  }
}

TEST(csc2, every_prefix_of_a_curve_is_refused_without_reading_past_it) {
  const bytes image = random_curve().encode();
  for (const std::uint32_t flags : {0u, VRK_IN16}) {
    fenced_block memory(65983);
    for (std::size_t length = 0; length < image.size(); length += length < 20 ? 1 : 101) {
      const bytes prefix(image.begin(), image.begin() + std::ptrdiff_t(length));
      EXPECT_EQ(create_csc(prefix, 4, 1, flags, nullptr) != 0, length > 12) << length;
      EXPECT_EQ(create_csc(prefix, 4, 1, flags, memory.data()), 0u) << length;
    }
  }
}

TEST(csc2, no_pixels_follow_no_pointer) {
  guarded_copy nowhere(bytes{});
  const bytes grid = random_table(4, 2, 1).encode();
  EXPECT_EQ(converter(grid, 0).run(nowhere.end(), nullptr, 0, nowhere.end()), 1u);
  EXPECT_EQ(converter(grid, 0, 1).run(nowhere.end(), nullptr, 0, nowhere.end()), 1u);
  EXPECT_EQ(converter(random_curve().encode(), 0, 1).run(nowhere.end(), nullptr, 0, nowhere.end()), 1u);
}

}  // namespace
