// Both converters; grids for the first have three channels, for the second four or six.
#include <numeric>

#include "kit/explain.h"
#include "tests/csc/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::color_table;
using vrk::kit::subtype_table;

constexpr unsigned all_channels[] = {3, 4, 6};

TEST(csc_grid, sizes_and_hints) {
  const bytes grid3 = random_table(3, 17, 1).encode(), grid4 = random_table(4, 17, 1).encode(),
              grid6 = random_table(6, 17, 1).encode(), curve = random_curves(1).encode(), sub = subtype_table("blck");
  const struct {
    const bytes& image;
    unsigned input_samples;
    std::uint32_t flags, size, hint;
  } cases[] = {
      {grid3, 3, 0x00, 21297, 0x00},  {grid3, 3, 0x01, 52520, 0x11},
      {grid3, 3, 0x4, 52520, 0x14},   {grid3, 3, 0x05, 52520, 0x15},
      {grid3, 3, 0x10, 52520, 0x10},  {grid3, 3, 0x20, 21297, 0x00},
      {grid3, 3, 0x21, 52520, 0x11},  {grid3, 3, 0xFFFFFFEA, 21297, 0xFFFFFFCA},
      {sub, 3, 0x8060, 324, 0x8040},  {sub, 3, 0x1, 324, 0x11},
      {grid4, 3, 0x00, 21389, 0x00},  {grid4, 1, 0x04, 52612, 0x14},
      {grid6, 3, 0x20, 31215, 0x00},  {grid6, 0x103, 1, 72264, 0x11},
      {curve, 1, 0x00, 703, 0x00},    {curve, 1, 0x34, 959, 0x14},
      {curve, 0x201, 1, 65983, 0x11}, {curve, 1, 0x05, 131519, 0x15},
  };
  for (const auto& c : cases) {
    converter csc(c.image, c.flags, c.input_samples);
    EXPECT_EQ(csc.bytes(), c.size) << c.flags;
    EXPECT_EQ(csc.hint(), c.hint) << c.flags;
  }
}

TEST(csc_grid, any_delta_stream_is_built_or_refused) {
  std::mt19937 random(1);
  for (const unsigned channels : all_channels) {
    color_table table = random_table(channels, 2, 1);
    table.encoding = encodings(channels).back();
    bytes header = table.encode();
    header.resize(12 + 3 * 2 * 2);
    fenced_block memory(create_csc(header, channels, 3, 0, nullptr));
    const auto built = [&](bytes stream) {
      stream.insert(stream.begin(), header.begin(), header.end());
      const bool taken = create_csc(stream, channels, 3, 0, memory.data()) != 0;
      const vrk::kit::refusal why =
          channels == 3 ? vrk::kit::why_refused_csc1(stream, false) : vrk::kit::why_refused_csc2(stream, 3, false);
      EXPECT_EQ(taken, !why) << why.text();
      return taken;
    };
    // One bits: full scale, then every sample 15 or 95 less. 0 and then one bits: the second sample is below 0 at once.
    // Full scale, then 16 or 32 more.
    bytes below_0(100, 0xFF), above_full(100, 0x00);
    below_0[0] = 0x00, below_0[1] = 0x3F;
    above_full[0] = 0xFF, above_full[1] = channels == 3 ? 0x80 : 0xE0;
    EXPECT_TRUE(built(bytes(100, 0xFF)));
    EXPECT_FALSE(built(below_0));
    EXPECT_FALSE(built(above_full));
    for (int round = 0; round < 1000; ++round) {
      bytes stream(random() % 60);
      for (std::uint8_t& byte : stream) byte = std::uint8_t(random());
      built(stream);
    }
    EXPECT_TRUE(memory.fences_intact());
  }
}

TEST(csc_grid, all_widths_axes_encodings_and_layouts_as_the_reference) {
  constexpr std::uint32_t some_layouts[] = {0, 1, 2, 3, 4, 0x101, 0xFFFFFFFF};
  for (const unsigned channels : all_channels) {
    for (const std::uint32_t flags : csc_flags) {
      unsigned seed = 0;
      for (const axis_span r : {full_axis, early_end, inner_axis, steep_axis, early_half, steepest_axis}) {
        if (flags == 0 && r.narrow) continue;
        for (const axis_span g : {full_axis, early_end, inner_axis, steep_axis}) {
          SCOPED_TRACE(testing::Message() << channels << " channels, flags " << flags << ", axes to " << r.last
                                          << " and " << g.last << ", seed " << seed);
          color_table table = random_table(channels, seed / 2 % 5 + 2, seed, r, g, full_axis);
          table.encoding = encodings(channels)[seed % 5];
          table.delta_codes_unused = seed / 5 % 4;
          const std::uint32_t layout = some_layouts[seed % 7];
          const bool masked = channels == 3 && seed % 2 == 0;
          const auto pixels = varied_pixels(masked && seed == 2 ? 65600 : 300, flags & VRK_IN16, layout + 1);
          expect_as_reference(by_grid(table, flags), pixels, layout, masked);
          if (channels != 3) expect_as_reference(by_grid(table, flags, true), pixels, layout);
          ++seed;
        }
      }
    }
  }
}

// Distances between grid points that need all their bits, and cell numbers of eight.
TEST(csc_grid, large_grids_as_the_reference) {
  expect_as_reference(by_grid(random_table(6, 40, 2), VRK_PREC12), varied_pixels(300, false), 0);
  color_table table = random_table(3, 255, 2);
  table.encoding = vrk::kit::grid_encoding::raw8;
  expect_as_reference(by_grid(table, 0), varied_pixels(300, false), 0);
}

TEST(csc_grid, handles_take_their_size_at_every_address) {
  for (const unsigned channels : all_channels) {
    const bytes image = random_table(channels, 6, 1).encode();
    const auto create = [&](void* mem) { return create_csc(image, channels, 3, 0, mem); };
    for (std::size_t offset = 0; offset < 32; ++offset) {
      EXPECT_EQ(handle(create, offset).used(), create(nullptr)) << offset;
    }
  }
}

TEST(csc_grid, no_pixels_follow_no_pointer) {
  guarded_copy nowhere(bytes{});
  for (const bytes& image : {random_table(3, 2, 1).encode(), random_table(4, 2, 1).encode(), random_curves(1).encode(),
                             subtype_table("thrh"), subtype_table("gray")}) {
    EXPECT_EQ(converter(image, 0, 1).run(nowhere.end(), nowhere.end(), 0, nowhere.end()), 1u);
  }
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

// Every level in each of the samples, in every layout; inverted ones between masked pixels.
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
      expect_as_reference(by_rule(rule, flags | invert), pixels, i % 4, invert != 0);
    }
  }
}

TEST(csc2, grids_take_one_or_three_input_samples_and_curves_one) {
  const bytes grid = random_table(4, 2, 1).encode(), curve = random_curves(1).encode();
  for (const unsigned samples : {0u, 1u, 2u, 3u, 4u, 0x101u, 0x103u, 0x200u}) {
    for (const bytes& image : {grid, curve}) {
      const auto create = [&](void* mem) { return create_csc(image, 4, samples, 0, mem); };
      if ((samples & 0xFF) == 1 || ((samples & 0xFF) == 3 && image == grid)) {
        handle taken(create);
      } else {
        expect_refused(create, std::to_string(samples));
      }
    }
  }
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

// A layout means nothing to them.
TEST(csc2, curves) {
  std::uint32_t layout = 0;
  for (const std::uint32_t flags : csc_flags) {
    std::vector<rgb> pixels(flags & VRK_IN16 ? 65536 : 256);
    for (unsigned level = 0; level < pixels.size(); ++level) pixels[level].fill(level);
    expect_as_reference(by_curve(flags), pixels, layout++ % 4);
  }
}

}  // namespace
