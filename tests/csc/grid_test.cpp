// What both converters have in common; grids for the first have three channels, for the second four or six.
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
      return create_csc(stream, channels, 3, 0, memory.data()) != 0;
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
          const auto pixels = varied_pixels(300, flags & VRK_IN16, layout + 1);
          expect_as_reference(by_grid(table, flags), pixels, layout);
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

}  // namespace
