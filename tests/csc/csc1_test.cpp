#include "tests/csc/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::color_table;
using vrk::kit::subtype_table;

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

// What the subtypes make of a pixel at working precision; those of one sample leave it first.
rgb through(rgb v, unsigned) { return v; }
rgb solid(rgb v, unsigned full) {
  const unsigned half = (full + 1) / 2;
  for (unsigned& s : v) s = s == full ? full : s >= half ? half : s >= half / 2 ? half / 2 : 0;
  return v;
}
rgb gray(rgb v, unsigned full) {
  if (full == 4095) return {(4915 * v[0] + 9831 * v[1] + 1638 * v[2]) / 16384};
  return {(307 * v[0] + 615 * v[1] + 102 * v[2]) / 1024};
}
rgb black(rgb v, unsigned full) { return {v == rgb{full, full, full} ? full : 0}; }

constexpr struct {
  const char* subtype;
  unsigned out_samples;
  rgb (*value)(rgb level, unsigned full);
} fixed_rules[] = {{"thrh", 3, through}, {"sold", 3, solid}, {"gray", 1, gray}, {"blck", 1, black}};

// Every level in each of the samples, in every layout.
TEST(csc1, fixed_rules) {
  for (unsigned i = 0; i < 2 * std::size(csc_flags); ++i) {
    const std::uint32_t flags = csc_flags[i / 2], invert = i % 2 * VRK_INVERT, layout = i % 4;
    const unsigned levels = flags & VRK_IN16 ? 65536 : 256, full = flags != 0 ? 4095 : 255;
    std::vector<rgb> pixels;
    for (unsigned v = 0; v < levels; ++v) {
      pixels.insert(pixels.end(), {{v, v, v}, {v, levels - 1, levels - 1}, {7, v, levels / 3}, {levels - 1, 9, v}});
    }
    const csc_reference reference(random_table(3, 2, 1), flags);
    for (const auto& rule : fixed_rules) {
      const bool rgb_out = rule.out_samples == 3;
      const layout_places out = rgb_out ? layouts[layout] : layout_places{1, {0, 0, 0}};
      samples expected(pixels.size() * out.samples, flags & VRK_OUT16 ? 0xA5A5 : 0xA5);
      for (std::size_t p = 0; p < pixels.size(); ++p) {
        const auto [r, g, b] = pixels[p];
        const rgb level{reference.working(r), reference.working(g), reference.working(b)};
        const rgb value = rule.value(level, full);
        for (unsigned c = 0; c < rule.out_samples; ++c) {
          expected[p * out.samples + out.rgb[c]] = reference.output(invert && !rgb_out ? full - value[c] : value[c]);
        }
      }
      converter csc(subtype_table(rule.subtype), flags | invert);
      csc.set_layout(layout);
      EXPECT_EQ(csc.run(laid_out(pixels, layouts[layout]), unsigned(pixels.size()), out.samples), expected)
          << rule.subtype << " flags " << (flags | invert);
    }
  }
}

}  // namespace
