#include "tests/csc/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::color_table;

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
  std::vector<std::uint8_t> mask(65600 / 8);
  for (std::uint8_t& bits : mask) bits = std::uint8_t(random());
  std::uint32_t layout = 0;
  for (const std::uint32_t flags : csc_flags) {
    const auto pixels = varied_pixels(flags == VRK_OUT16 ? 65600 : 400, flags & VRK_IN16);
    for (const fixed_rule& rule : fixed_rules) {
      expect_as_reference(by_rule(rule, flags | VRK_INVERT), pixels, layout++ % 4, mask.data());
    }
    expect_as_reference(by_grid(random_table(3, 5, 2), flags), pixels, layout++ % 4, mask.data());
  }
}

// Every level in each of the samples, in every layout.
TEST(csc1, fixed_rules) {
  for (unsigned i = 0; i < 2 * std::size(csc_flags); ++i) {
    const std::uint32_t flags = csc_flags[i / 2], invert = i % 2 * VRK_INVERT;
    const unsigned levels = flags & VRK_IN16 ? 65536 : 256;
    std::vector<rgb> pixels;
    for (unsigned v = 0; v < levels; ++v) {
      pixels.insert(pixels.end(), {{v, v, v}, {v, levels - 1, levels - 1}, {7, v, levels / 3}, {levels - 1, 9, v}});
    }
    for (const fixed_rule& rule : fixed_rules) {
      SCOPED_TRACE(testing::Message() << rule.subtype << " flags " << (flags | invert));
      expect_as_reference(by_rule(rule, flags | invert), pixels, i % 4);
    }
  }
}

}  // namespace
