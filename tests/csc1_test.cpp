#include <gtest/gtest.h>

#include "tests/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::color_table;
using vrk::kit::subtype_table;

TEST(csc1, sizes_and_hints) {
  const bytes grid = random_table(3, 17, 1).encode();
  const struct {
    std::uint32_t flags, size, hint;
  } cases[] = {{0, 21297, 0},       {1, 52520, 0x11}, {4, 52520, 0x14},    {5, 52520, 0x15},
               {0x10, 52520, 0x10}, {0x20, 21297, 0}, {0x21, 52520, 0x11}, {0x8040, 21297, 0x8040}};
  for (const auto& c : cases) {
    fenced_block memory(60000);
    EXPECT_EQ(create_csc(grid, 3, 3, c.flags, nullptr), c.size) << c.flags;
    EXPECT_EQ(create_csc(grid, 3, 3, c.flags, memory.data()), c.size) << c.flags;
    EXPECT_EQ(vrk_query_csc1_hint(memory.data()), c.hint);
    for (const char* subtype : {"thrh", "gray", "blck", "sold"}) {
      EXPECT_EQ(create_csc(subtype_table(subtype), 3, 3, c.flags, nullptr), 324u);
      EXPECT_EQ(create_csc(subtype_table(subtype), 3, 3, c.flags, memory.data()), 324u);
      EXPECT_EQ(vrk_query_csc1_hint(memory.data()), c.hint);
    }
  }
}

TEST(csc1, short_tables_are_refused) {
  const bytes cases[] = {
      {}, {'c', 's', 'c', '1'}, {'c', 's', 'c', '1', 'g', 'r', 'a'}, {'c', 's', 'c', '2', 'g', 'r', 'a', 'y'}};
  for (const bytes& image : cases) EXPECT_EQ(create_csc(image, 3, 3, 0, nullptr), 0u) << image.size();
  EXPECT_EQ(vrk_create_csc1(100, nullptr, 0, nullptr), 0u);
}

TEST(csc1, known_values) {
  color_table table;
  table.axes.fill({0x0000, 0xFF00});
  table.grid = {.points = 2, .channels = 3, .samples = {}};
  for (const int v : {0, 0, 0, 0, 0, 50, 0, 100, 0, 0, 100, 50, 200, 0, 0, 200, 0, 50, 200, 100, 0, 255, 255, 255}) {
    table.grid.samples.push_back(std::uint16_t(v * 257));
  }
  const samples in{100, 50, 25, 25, 50, 100, 50, 100, 25, 128, 128, 128, 255, 0, 0, 255, 255, 255};
  EXPECT_EQ(converter(table.encode(), 0).run(in, 6, 3),
            (samples{83, 34, 23, 23, 34, 38, 44, 53, 23, 127, 127, 127, 198, 0, 0, 255, 255, 255}));
  EXPECT_EQ(converter(table.encode(), VRK_PREC12).run(in, 6, 3),
            (samples{84, 34, 24, 24, 34, 39, 44, 54, 24, 128, 128, 128, 201, 0, 0, 255, 255, 255}));
}

TEST(csc1, masked_pixels_become_0_and_disturb_nothing) {
  std::mt19937 random(3);
  std::vector<std::uint8_t> mask(50);
  for (std::uint8_t& bits : mask) bits = std::uint8_t(random());
  for (const unsigned count : {13u, 400u}) {
    for (const char* subtype : {"", "thrh", "gray", "blck", "sold"}) {
      const unsigned channels = subtype[0] == 'g' || subtype[0] == 'b' ? 1 : 3;
      converter csc(*subtype == 0 ? random_table(3, 5, 2).encode() : subtype_table(subtype), VRK_INVERT);
      const samples in = laid_out(varied_pixels(count, false), layouts[0]);
      samples expected = csc.run(in, count, channels);
      for (unsigned i = 0; i < count * channels; ++i) {
        const unsigned p = i / channels;
        if (mask[p / 8] >> (7 - p % 8) & 1) expected[i] = 0;
      }
      EXPECT_EQ(csc.run(in, count, channels, mask.data()), expected) << subtype << count;
    }
  }
}

// Every level in each of the samples, in every layout.
TEST(csc1, fixed_rules) {
  for (unsigned i = 0; i < std::size(csc_flags); ++i) {
    const std::uint32_t flags = csc_flags[i];
    const bool in16 = flags & VRK_IN16, twelve = flags != 0;
    const unsigned full = twelve ? 4095 : 255, levels = in16 ? 65536 : 256;
    std::vector<std::array<unsigned, 3>> pixels;
    for (unsigned v = 0; v < levels; ++v) {
      pixels.insert(pixels.end(), {{v, v, v}, {v, levels - 1, levels - 1}, {7, v, levels / 3}, {levels - 1, 9, v}});
    }
    const layout_places& l = layouts[i % 4];
    const csc_reference reference(random_table(3, 2, 1), flags);
    samples through(pixels.size() * l.samples, flags & VRK_OUT16 ? 0xA5A5 : 0xA5), solid = through;
    samples gray, gray_inverted, black, black_inverted;
    for (std::size_t p = 0; p < pixels.size(); ++p) {
      unsigned level[3];
      for (unsigned c = 0; c < 3; ++c) {
        const unsigned v = level[c] = reference.working(pixels[p][c]), half = (full + 1) / 2;
        const std::size_t at = p * l.samples + (c == 0 ? l.r : c == 1 ? l.g : l.b);
        through[at] = reference.output(v);
        solid[at] = reference.output(v == full ? full : v >= half ? half : v >= half / 2 ? half / 2 : 0);
      }
      const auto [r, g, b] = level;
      const unsigned y = twelve ? (4915 * r + 9831 * g + 1638 * b) / 16384 : (307 * r + 615 * g + 102 * b) / 1024;
      const unsigned k = r + g + b == 3 * full ? full : 0;
      gray.push_back(reference.output(y));
      gray_inverted.push_back(reference.output(full - y));
      black.push_back(reference.output(k));
      black_inverted.push_back(reference.output(full - k));
    }
    const auto converted = [&](const char* subtype, unsigned out_samples, std::uint32_t more_flags = 0) {
      converter csc(subtype_table(subtype), flags | more_flags);
      csc.set_layout(i % 4);
      return csc.run(laid_out(pixels, l), unsigned(pixels.size()), out_samples);
    };
    EXPECT_EQ(converted("thrh", l.samples, VRK_INVERT), through) << flags;
    EXPECT_EQ(converted("sold", l.samples, VRK_INVERT), solid) << flags;
    EXPECT_EQ(converted("gray", 1), gray) << flags;
    EXPECT_EQ(converted("gray", 1, VRK_INVERT), gray_inverted) << flags;
    EXPECT_EQ(converted("blck", 1), black) << flags;
    EXPECT_EQ(converted("blck", 1, VRK_INVERT), black_inverted) << flags;
  }
}

TEST(csc1, no_pixels_follow_no_pointer) {
  guarded_copy nowhere(bytes{});
  for (const bytes& image : {random_table(3, 2, 1).encode(), subtype_table("thrh"), subtype_table("gray")}) {
    EXPECT_EQ(converter(image, 0).run(nowhere.end(), nowhere.end(), 0, nowhere.end()), 1u);
  }
}

}  // namespace
