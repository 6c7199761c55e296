// What both converters have in common; grids for the first have three channels, for the second four or six.
#include <gtest/gtest.h>

#include <string>

#include "tests/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::color_table;
using vrk::kit::grid_encoding;
using vrk::kit::subtype_table;

constexpr unsigned all_channels[] = {3, 4, 6};

std::vector<grid_encoding> encodings(unsigned channels) {
  using enum grid_encoding;
  return {raw16, packed12, packed10, raw8, channels == 3 ? delta8 : delta10};
}

TEST(csc_grid, sizes_and_hints) {
  const bytes grid3 = random_table(3, 17, 1).encode(), grid4 = random_table(4, 17, 1).encode(),
              grid6 = random_table(6, 17, 1).encode(), curve = random_curve().encode(), sub = subtype_table("blck");
  const struct {
    const bytes& image;
    unsigned input_samples;
    std::uint32_t flags, size, hint;
  } cases[] = {
      {grid3, 3, 0x00, 21297, 0x00},  {grid3, 3, 0x01, 52520, 0x11},  {grid3, 3, 0x4, 52520, 0x14},
      {grid3, 3, 0x05, 52520, 0x15},  {grid3, 3, 0x10, 52520, 0x10},  {grid3, 3, 0x20, 21297, 0x00},
      {grid3, 3, 0x21, 52520, 0x11},  {sub, 3, 0x8060, 324, 0x8040},  {sub, 3, 0x1, 324, 0x11},
      {grid4, 3, 0x00, 21389, 0x00},  {grid4, 1, 0x04, 52612, 0x14},  {grid6, 3, 0x20, 31215, 0x00},
      {grid6, 0x103, 1, 72264, 0x11}, {curve, 1, 0x00, 703, 0x00},    {curve, 1, 0x34, 959, 0x14},
      {curve, 0x201, 1, 65983, 0x11}, {curve, 1, 0x05, 131519, 0x15},
  };
  for (const auto& c : cases) {
    const unsigned channels = c.image[3] == '1' ? 3 : 4;
    EXPECT_EQ(create_csc(c.image, channels, c.input_samples, c.flags, nullptr), c.size) << c.flags;
    EXPECT_EQ(converter(c.image, c.flags, c.input_samples).hint(), c.hint) << c.flags;
  }
}

TEST(csc_grid, tables_are_refused_by_their_header) {
  for (const unsigned channels : all_channels) {
    const auto taken_with = [channels](auto change) {
      color_table table = random_table(channels, 2, 1);
      change(table);
      return taken(table.encode(), channels, 3);
    };
    for (const char* version : {"0010", "001z"}) EXPECT_TRUE(taken_with([&](auto& t) { t.version = version; }));
    for (const char* version : {"0020", "0100", "z100"})
      EXPECT_FALSE(taken_with([&](auto& t) { t.version = version; }));
    for (const char* magic : {"1csc", "cscx", "CSC1", channels == 3 ? "csc2" : "csc1"}) {
      EXPECT_FALSE(taken_with([&](auto& t) { t.magic = magic; })) << magic;
    }
    for (const unsigned n : {1u, 4u}) EXPECT_FALSE(taken_with([&](auto& t) { t.in_channels = n; }));
    for (const unsigned n : {1u, 5u, channels == 3 ? 4u : 3u}) {
      EXPECT_FALSE(taken_with([&](auto& t) { t.out_channels = n; })) << n;
    }
    for (const unsigned n : {0u, 1u}) EXPECT_FALSE(taken_with([&](auto& t) { t.points = n; }));
    for (const unsigned code : {4u, 5u, channels == 3 ? 6u : 7u, 8u}) {
      EXPECT_FALSE(taken_with([&](auto& t) { t.encoding_byte = code; })) << code;
    }
  }
}

TEST(csc_grid, axes_increase_at_the_working_precision) {
  for (const unsigned channels : all_channels) {
    const auto built = [&](vrk::kit::axis_positions axis, std::uint32_t flags) {
      color_table table = random_table(channels, 3, 1);
      table.axes[1] = std::move(axis);
      fenced_block memory(create_csc(table.encode(), channels, 3, flags, nullptr));
      return create_csc(table.encode(), channels, 3, flags, memory.data()) != 0;
    };
    EXPECT_FALSE(built({0, 0x1000, 0x10FF}, 0));
    EXPECT_TRUE(built({0, 0x1000, 0x10FF}, VRK_PREC12));
    EXPECT_FALSE(built({0, 0x3000, 0x2000}, VRK_PREC12));
  }
}

// The size call looks at the header only, the build call wants the whole body; 2, 3 and 5 points have every tail.
TEST(csc_grid, every_prefix_of_a_table_is_refused_without_reading_past_it) {
  std::vector<bytes> images{random_curve().encode()};
  for (const unsigned channels : all_channels) {
    for (const grid_encoding encoding : encodings(channels)) {
      for (const unsigned points : {2u, 3u, 5u}) {
        color_table table = random_table(channels, points, 2);
        table.encoding = encoding;
        images.push_back(table.encode());
      }
    }
  }
  for (const bytes& image : images) {
    for (const std::uint32_t flags : {0u, VRK_IN16}) {
      const unsigned channels = image[3] == '1' ? 3 : 4;
      const std::uint32_t size = create_csc(image, channels, 1, flags, nullptr);
      fenced_block memory(size);
      std::size_t step = 1;
      for (std::size_t length = 0; length < image.size(); length += step) {
        step = length < 100 || length + 100 > image.size() ? 1 : 53;
        const bytes prefix(image.begin(), image.begin() + std::ptrdiff_t(length));
        EXPECT_EQ(create_csc(prefix, channels, 1, flags, nullptr), length > 12 ? size : 0) << length;
        EXPECT_EQ(create_csc(prefix, channels, 1, flags, memory.data()), 0u) << length;
      }
      EXPECT_EQ(create_csc(image, channels, 1, flags, memory.data()), size);
      EXPECT_TRUE(memory.fences_intact());
    }
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

// A run at once and pixels one by one, since long and short runs take different kernels; and into its own input where
// pixels in and out have the same length.
void expect_as_reference(const color_table& table, std::uint32_t flags, std::uint32_t layout, bool gray = false) {
  const unsigned channels = table.grid.channels;
  const layout_places in_place = gray ? layout_places{1, {0, 0, 0}} : layouts[layout > 3 ? 0 : layout];
  const layout_places out_place = channels == 3 ? in_place : layout_places{channels, {0, 1, 2}};
  auto pixels = varied_pixels(300, flags & VRK_IN16, layout + 1);
  samples expected(pixels.size() * out_place.samples, flags & VRK_OUT16 ? 0xA5A5 : 0xA5);
  const csc_reference reference(table, flags, gray);
  for (std::size_t p = 0; p < pixels.size(); ++p) {
    if (gray) pixels[p].fill(pixels[p][2]);
    const samples out = reference(pixels[p]);
    for (unsigned c = 0; c < channels; ++c) expected[p * out_place.samples + (c < 3 ? out_place.rgb[c] : c)] = out[c];
  }
  converter csc(table.encode(), flags, gray ? 1 : 3, layout % 8 * 4);
  csc.set_layout(layout);
  const samples src = laid_out(pixels, in_place);
  EXPECT_EQ(csc.run(src, unsigned(pixels.size()), out_place.samples), expected);
  for (std::size_t p = 0; p < pixels.size(); p += 7) {
    const auto part = [p](const samples& all, unsigned length) {
      return samples(all.begin() + std::ptrdiff_t(p * length), all.begin() + std::ptrdiff_t((p + 1) * length));
    };
    EXPECT_EQ(csc.run(part(src, in_place.samples), 1, out_place.samples), part(expected, out_place.samples));
  }
  std::vector<std::uint8_t> buffer = packed(laid_out(pixels, in_place, 0xA5A5), flags & VRK_IN16);
  if (buffer.size() != packed(expected, flags & VRK_OUT16).size()) return;
  csc.run(buffer.data(), nullptr, unsigned(pixels.size()), buffer.data());
  EXPECT_EQ(unpacked(buffer, flags & VRK_OUT16), expected);
}

// Layouts that do not exist are layout 0.
TEST(csc_grid, all_widths_axes_encodings_and_layouts_as_the_reference) {
  constexpr std::uint32_t some_layouts[] = {0, 1, 2, 3, 4, 0x101, 0xFFFFFFFF};
  for (const unsigned channels : all_channels) {
    for (const std::uint32_t flags : csc_flags) {
      unsigned seed = 0;
      for (const axis_span r : {full_axis, early_end, inner_axis, steep_axis, steepest_axis}) {
        if (flags == 0 && r.narrow) continue;
        for (const axis_span g : {full_axis, early_end, inner_axis, steep_axis}) {
          SCOPED_TRACE(testing::Message() << channels << " channels, flags " << flags << ", axes to " << r.last
                                          << " and " << g.last << ", seed " << seed);
          color_table table = random_table(channels, seed / 2 % 5 + 2, seed, r, g, full_axis);
          table.encoding = encodings(channels)[seed % 5];
          expect_as_reference(table, flags, some_layouts[seed % 7]);
          if (channels != 3) expect_as_reference(table, flags, 0, true);
          ++seed;
        }
      }
    }
  }
}

TEST(csc_grid, handles_depend_on_nothing_that_was_in_their_aligned_memory) {
  for (const unsigned channels : all_channels) {
    const bytes image = random_table(channels, 6, 1).encode();
    const std::uint32_t size = create_csc(image, channels, 3, 0, nullptr);
    for (std::size_t offset = 0; offset < 32; ++offset) {
      fenced_block memory(size, offset), again(size, offset, 0x11);
      EXPECT_EQ(create_csc(image, channels, 3, 0, memory.data()), offset % 4 == 0 ? size : 0);
      create_csc(image, channels, 3, 0, again.data());
      EXPECT_TRUE(offset % 4 == 0 ? std::ranges::equal(memory.contents(), again.contents()) : memory.untouched());
      EXPECT_TRUE(memory.fences_intact());
    }
  }
}

TEST(csc_grid, no_pixels_follow_no_pointer) {
  guarded_copy nowhere(bytes{});
  for (const bytes& image : {random_table(3, 2, 1).encode(), random_table(4, 2, 1).encode(), random_curve().encode(),
                             subtype_table("thrh"), subtype_table("gray")}) {
    EXPECT_EQ(converter(image, 0, 1).run(nowhere.end(), nowhere.end(), 0, nowhere.end()), 1u);
  }
}

}  // namespace
