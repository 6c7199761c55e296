// What both converters make of a grid, the first with three channels, the second with four and six.
#include <gtest/gtest.h>

#include <string>

#include "tests/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::color_table;
using vrk::kit::grid_encoding;

constexpr unsigned all_channels[] = {3, 4, 6};

std::vector<grid_encoding> encodings(unsigned channels) {
  using enum grid_encoding;
  return {raw16, packed12, packed10, raw8, channels == 3 ? delta8 : delta10};
}

std::uint32_t size_of(const bytes& image, unsigned channels, std::uint32_t flags = 0) {
  return create_csc(image, channels, 3, flags, nullptr);
}

TEST(csc_grid, tables_are_refused_by_their_header) {
  for (const unsigned channels : all_channels) {
    const auto expect = [channels](bool accepted, auto change) {
      color_table table = random_table(channels, 2, 1);
      change(table);
      const bytes image = table.encode();
      fenced_block memory(2000);
      EXPECT_EQ(size_of(image, channels) != 0, accepted) << std::string(image.begin(), image.begin() + 12);
      EXPECT_EQ(create_csc(image, channels, 3, 0, memory.data()) != 0, accepted);
      EXPECT_NE(memory.untouched(), accepted);
    };
    for (const char* version : {"0010", "001z"}) expect(true, [&](auto& t) { t.version = version; });
    for (const char* version : {"0020", "0100", "z100"}) expect(false, [&](auto& t) { t.version = version; });
    for (const char* magic : {"1csc", "cscx", "CSC1"}) expect(false, [&](auto& t) { t.magic = magic; });
    expect(false, [&](auto& t) { t.magic = channels == 3 ? "csc2" : "csc1"; });
    for (const unsigned n : {1u, 4u}) expect(false, [&](auto& t) { t.in_channels = n; });
    for (const unsigned n : {1u, 5u, channels == 3 ? 4u : 3u}) expect(false, [&](auto& t) { t.out_channels = n; });
    for (const unsigned n : {0u, 1u}) expect(false, [&](auto& t) { t.points = n; });
    for (const unsigned code : {4u, 5u, channels == 3 ? 6u : 7u, 8u})
      expect(false, [&](auto& t) { t.encoding_byte = code; });
  }
}

TEST(csc_grid, axes_increase_at_the_working_precision) {
  for (const unsigned channels : all_channels) {
    color_table table = random_table(channels, 3, 1);
    table.axes[1] = {0, 0x1000, 0x10FF};
    fenced_block memory(size_of(table.encode(), channels, VRK_PREC12));
    EXPECT_EQ(create_csc(table.encode(), channels, 3, 0, memory.data()), 0u);
    EXPECT_NE(create_csc(table.encode(), channels, 3, VRK_PREC12, memory.data()), 0u);
    table.axes[1] = {0, 0x3000, 0x2000};
    EXPECT_EQ(create_csc(table.encode(), channels, 3, VRK_PREC12, memory.data()), 0u);
  }
}

// The size call looks at the header only, the build call wants the whole body; 2, 3 and 5 points have every tail.
TEST(csc_grid, every_prefix_of_a_table_is_refused_without_reading_past_it) {
  for (const unsigned channels : all_channels) {
    for (const grid_encoding encoding : encodings(channels)) {
      for (const unsigned points : {2u, 3u, 5u}) {
        color_table table = random_table(channels, points, 2);
        table.encoding = encoding;
        const bytes image = table.encode();
        const std::uint32_t size = size_of(image, channels);
        fenced_block memory(size);
        const std::size_t step = points == 5 ? 53 : 1;
        for (std::size_t length = (image.size() - 1) % step; length < image.size(); length += step) {
          const bytes prefix(image.begin(), image.begin() + std::ptrdiff_t(length));
          EXPECT_EQ(size_of(prefix, channels), length > 12 ? size : 0) << length;
          EXPECT_EQ(create_csc(prefix, channels, 3, 0, memory.data()), 0u) << length;
        }
        EXPECT_EQ(create_csc(image, channels, 3, 0, memory.data()), size);
        EXPECT_TRUE(memory.fences_intact());
      }
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
    fenced_block memory(size_of(header, channels));
    // One bits: full scale, then every sample 15 or 95 less. 0 and then one bits: the second sample is below 0 at once.
    bytes in_range = header, below_0 = header;
    in_range.resize(header.size() + 100, 0xFF);
    below_0.insert(below_0.end(), {0x00, 0x3F});
    below_0.resize(header.size() + 100, 0xFF);
    EXPECT_NE(create_csc(in_range, channels, 3, 0, memory.data()), 0u);
    EXPECT_EQ(create_csc(below_0, channels, 3, 0, memory.data()), 0u);
    for (int round = 0; round < 1000; ++round) {
      bytes stream = header;
      for (unsigned i = unsigned(random() % 60); i != 0; --i) stream.push_back(std::uint8_t(random()));
      create_csc(stream, channels, 3, 0, memory.data());
    }
    EXPECT_TRUE(memory.fences_intact());
  }
}

// A run at once and pixels one by one, since long and short runs take different kernels.
void expect_as_reference(const color_table& table, std::uint32_t flags, unsigned layout, bool gray = false) {
  const unsigned channels = table.grid.channels;
  const layout_places in_place = gray ? layout_places{1, 0, 0, 0} : layouts[layout];
  const layout_places out_place = channels == 3 ? in_place : layout_places{channels, 0, 1, 2};
  auto pixels = varied_pixels(300, flags & VRK_IN16, layout + 1);
  samples expected(pixels.size() * out_place.samples, flags & VRK_OUT16 ? 0xA5A5 : 0xA5);
  const csc_reference reference(table, flags, gray);
  for (std::size_t p = 0; p < pixels.size(); ++p) {
    if (gray) pixels[p].fill(pixels[p][2]);
    const samples out = reference(pixels[p]);
    std::uint16_t* const at = &expected[p * out_place.samples];
    std::copy(out.begin() + 3, out.end(), at + 3);
    at[out_place.r] = out[0], at[out_place.g] = out[1], at[out_place.b] = out[2];
  }
  converter csc(table.encode(), flags, gray ? 1 : 3);
  csc.set_layout(layout);
  const samples src = laid_out(pixels, in_place);
  EXPECT_EQ(csc.run(src, unsigned(pixels.size()), out_place.samples), expected);
  for (std::size_t p = 0; p < pixels.size(); p += 7) {
    const auto part = [p](const samples& all, unsigned length) {
      return samples(all.begin() + std::ptrdiff_t(p * length), all.begin() + std::ptrdiff_t((p + 1) * length));
    };
    EXPECT_EQ(csc.run(part(src, in_place.samples), 1, out_place.samples), part(expected, out_place.samples));
  }
}

TEST(csc_grid, all_widths_axes_and_layouts_as_the_reference) {
  for (const unsigned channels : all_channels) {
    for (const std::uint32_t flags : csc_flags) {
      unsigned seed = 0;
      for (const axis_span r : {full_axis, early_end, inner_axis, steep_axis, steepest_axis}) {
        if (flags == 0 && r.narrow) continue;
        for (const axis_span g : {full_axis, early_end, full_axis, steep_axis}) {
          const unsigned points = seed % 5 + 2;
          SCOPED_TRACE(testing::Message() << channels << " channels, flags " << flags << ", axes to " << r.last
                                          << " and " << g.last << ", seed " << seed);
          const color_table table = random_table(channels, points, seed, r, g, full_axis);
          expect_as_reference(table, flags, seed / 2 % 4);
          if (channels != 3) expect_as_reference(table, flags, 0, true);
          ++seed;
        }
      }
    }
  }
}

TEST(csc_grid, all_encodings_as_the_reference) {
  for (const unsigned channels : all_channels) {
    for (const grid_encoding encoding : encodings(channels)) {
      for (const std::uint32_t flags : csc_flags) {
        SCOPED_TRACE(testing::Message() << channels << " channels, encoding " << int(encoding) << ", flags " << flags);
        color_table table = random_table(channels, flags % 4 + 2, 2);
        table.encoding = encoding;
        expect_as_reference(table, flags, 0);
      }
    }
  }
}

// Input and output pixels of the same length in bytes; a fourth sample of the first converter stays.
TEST(csc_grid, output_may_replace_input) {
  const struct {
    unsigned channels;
    std::uint32_t flags;
    unsigned layout, out_samples;
  } cases[] = {{3, 0, 0, 3},
               {3, 0, 1, 3},
               {3, 0, 2, 4},
               {3, 0, 3, 4},
               {3, VRK_IN16 | VRK_OUT16, 3, 4},
               {6, VRK_IN16, 0, 6},
               {4, 0, 2, 4},
               {4, 0, 3, 4},
               {4, VRK_IN16 | VRK_OUT16, 3, 4}};
  for (const auto& c : cases) {
    for (const unsigned count : {100u, 400u}) {
      converter csc(random_table(c.channels, 5, 2).encode(), c.flags);
      csc.set_layout(c.layout);
      const samples in = laid_out(varied_pixels(count, c.flags), layouts[c.layout]);
      samples expected = csc.run(in, count, c.out_samples);
      for (unsigned p = 0; c.channels == 3 && c.out_samples == 4 && p < count; ++p) {
        expected[4 * p + (c.layout == 2 ? 3 : 0)] = 0x5A;
      }
      std::vector<std::uint8_t> buffer = packed(in, c.flags);
      csc.run(buffer.data(), nullptr, count, buffer.data());
      EXPECT_EQ(unpacked(buffer, c.flags & VRK_OUT16), expected) << c.channels << c.layout;
    }
  }
}

TEST(csc_grid, layouts_above_3_are_layout_0) {
  for (const unsigned channels : all_channels) {
    converter csc(random_table(channels, 3, 1).encode(), 0);
    const samples in = laid_out(varied_pixels(300, false), layouts[0]), expected = csc.run(in, 300, channels);
    for (const std::uint32_t layout : {4u, 0x101u, 0xFFFFFFFFu}) {
      csc.set_layout(layout);
      EXPECT_EQ(csc.run(in, 300, channels), expected);
    }
  }
}

TEST(csc_grid, memory_at_any_address_gives_the_same) {
  for (const unsigned channels : all_channels) {
    const bytes image = random_table(channels, 6, 1).encode();
    const samples in = laid_out(varied_pixels(300, false), layouts[0]);
    const samples expected = converter(image, 0).run(in, 300, channels);
    for (std::size_t offset = 0; offset < 32; ++offset) {
      fenced_block memory(size_of(image, channels), offset), again(memory.contents().size(), offset, 0x11);
      if (offset % 4 != 0) {
        EXPECT_EQ(create_csc(image, channels, 3, 0, memory.data()), 0u);
        EXPECT_TRUE(memory.untouched());
        continue;
      }
      create_csc(image, channels, 3, 0, memory.data());
      create_csc(image, channels, 3, 0, again.data());
      EXPECT_TRUE(std::equal(memory.contents().begin(), memory.contents().end(), again.contents().begin())) << offset;
      EXPECT_TRUE(memory.fences_intact());
      EXPECT_EQ(converter(image, 0, 3, offset).run(in, 300, channels), expected);
    }
  }
}

}  // namespace
