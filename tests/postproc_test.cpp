#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "kit/curve_image.h"
#include "tests/guard.h"
#include "tests/samples.h"
#include "vrk.h"

namespace {

using vrk::kit::curve;
using vrk::kit::curve_image;
using vrk::test::fenced_block;
using vrk::test::guarded_copy;
using vrk::test::samples;
using table = std::optional<curve_image>;
constexpr auto none = std::nullopt;

template <class Level>
curve make_curve(Level level) {
  curve c{};
  for (unsigned j = 0; j < c.size(); ++j) c[j] = std::uint16_t(level(j));
  return c;
}

// Without a pattern that a wrong index or shift could hit by luck.
curve_image random_curves(unsigned count, unsigned seed = 1) {
  std::mt19937 random(seed);
  curve_image image;
  for (unsigned k = 0; k < count; ++k) image.curves.push_back(make_curve([&](unsigned) { return random(); }));
  return image;
}

// A main table that counts the channels itself. out: 0 for as many as in. Only the split of four needs curves beyond
// those of its input.
curve_image counting_curves(unsigned in, unsigned out) {
  curve_image image = random_curves(in == 4 ? std::max(in, out) : in);
  image.version = "0020";
  image.curve_count = in;
  image.output_count = out;
  return image;
}

// The arguments of create. Images end at an unreadable page, and tables that are off lie in one.
struct job {
  unsigned planes = 4;
  table main{};
  std::array<table, 6> plane{};  // K, C, M, Y, fifth, sixth
  unsigned flags = 0;

  std::uint32_t create(void* mem = nullptr) const {
    std::array<std::optional<guarded_copy>, 7> images;
    for (std::size_t t = 0; t < images.size(); ++t) {
      const table& image = t == 0 ? main : plane[t - 1];
      images[t].emplace(image ? image->encode() : vrk::kit::bytes{});
    }
    const auto on = [&](std::size_t t) { return images[t]->size() != 0 ? 0x100u : 0; };
    const auto at = [&](std::size_t t) { return images[t]->data(); };
    return vrk_create_postproc(planes, on(0), at(0), on(1), at(1), on(2), at(2), on(3), at(3), on(4), at(4), on(5),
                               at(5), on(6), at(6), flags, mem);
  }

  bool in16() const { return (flags & VRK_IN16) != 0; }
  bool out16() const { return (flags & VRK_OUT16) != 0; }
  bool main_counts() const { return main && main->version != "0010"; }
  unsigned in() const { return main_counts() ? *main->curve_count : planes; }
  unsigned out() const { return main_counts() && main->output_count != 0 ? main->output_count : in(); }
};

// By definition, sample by sample, from the images: levels of 10 and 16 bits, no reduced curve.
struct reference {
  const job& of;

  bool copies() const {
    return !of.main && std::none_of(&of.plane[0], &of.plane[of.out()], std::mem_fn(&table::has_value));
  }

  const curve& main_curve(unsigned plane) const {
    const std::size_t curves = of.main_counts() ? of.out() : of.main->curves.size();
    const std::string order = curves == 1 ? "K" : curves == 4 ? "CMYK" : "C5M6YK";
    return of.main->curves[order.find(curves == 1 ? 'K' : "KCMY56"[plane])];
  }

  unsigned output(unsigned plane, unsigned sample) const {
    const auto ten_bits = [](unsigned v8) { return v8 * 4 + v8 / 64; };
    const auto out = [&](unsigned v16) { return of.out16() ? v16 : v16 / 256; };
    const unsigned level = of.in16() ? sample / 64 : ten_bits(sample);
    const table& plane_curve = of.plane[plane];
    if (copies()) return out(of.in16() ? sample : sample * 257);
    if (!of.main && !plane_curve) return out(of.in16() ? level * 64 + level / 16 : sample * 257);
    if (!of.main) return out(plane_curve->curves[0][level]);
    const unsigned v16 = main_curve(plane)[level];
    if (!plane_curve) return out(v16);
    const bool by_ten_bits = of.in16() || of.out16() || (of.flags & VRK_MID10) != 0;
    return out(plane_curve->curves[0][by_ten_bits ? v16 / 64 : ten_bits(v16 / 256)]);
  }

  samples line(const samples& src) const {
    samples dst;
    for (std::size_t first = 0; first < src.size(); first += of.in()) {
      for (unsigned p = 0; p < of.out(); ++p) {
        dst.push_back(std::uint16_t(output(p, src[first + (p < of.in() ? p : p == 4 ? 1 : 2)])));
      }
    }
    return dst;
  }
};

// Sends a line through a handle: from the end of a readable page to a fenced odd address.
samples transformed(const job& j, const samples& src) {
  fenced_block handle(j.create());
  EXPECT_NE(j.create(handle.data()), 0u);
  const std::vector<std::uint8_t> built(handle.contents().begin(), handle.contents().end());
  const std::size_t pixels = src.size() / j.in();
  guarded_copy readable(vrk::test::packed(src, j.in16()));
  fenced_block dst(pixels * j.out() * (j.out16() ? 2 : 1), 1);
  EXPECT_EQ(vrk_xform_postproc(handle.data(), readable.data(), std::uint32_t(pixels), dst.data()), 1u);
  EXPECT_TRUE(dst.fences_intact() && handle.fences_intact());
  EXPECT_TRUE(std::equal(built.begin(), built.end(), handle.contents().begin())) << "transforms only read a handle";
  return vrk::test::unpacked(dst.contents(), j.out16());
}

// Every level of the input width (of words: every index) in every channel, out of step with each other.
samples all_levels(const job& j) {
  samples src;
  const unsigned levels = j.in16() ? 65536 : 256, step = j.in16() ? 23 : 1;
  for (unsigned v = 0; v < levels + 300 * step; v += step) {
    for (unsigned p = 0; p < j.in(); ++p) src.push_back(std::uint16_t((v + p * (levels / 5)) % levels));
  }
  return src;
}

TEST(postproc, sizes_follow_the_size_rule) {
  const table one = random_curves(1), four = random_curves(4), six = random_curves(6);
  const auto size = [](unsigned planes, unsigned flags, table main = none, std::array<table, 6> plane = {}) {
    return job{planes, std::move(main), std::move(plane), flags}.create();
  };
  EXPECT_EQ(size(1, 0), 124u);
  EXPECT_EQ(size(4, 0), 127u);
  EXPECT_EQ(size(6, 0), 129u);
  EXPECT_EQ(size(0x104, 0), 127u) << "the low byte counts";
  EXPECT_EQ(size(1, VRK_OUT16), 125u);
  EXPECT_EQ(size(4, VRK_OUT16), 131u);
  EXPECT_EQ(size(6, VRK_OUT16), 135u);
  EXPECT_EQ(size(4, 0, four), 2206u);
  EXPECT_EQ(size(4, 0, four, {one}), 2206u + 543);
  EXPECT_EQ(size(4, VRK_MID10, four, {one}), 2206u + 2079);
  EXPECT_EQ(size(4, VRK_MID10, none, {one}), 127u + 543);
  EXPECT_EQ(size(6, VRK_IN16 | VRK_OUT16 | VRK_COMPOSE, six, {one, one, one, one, one, one}), 37247u);
  for (const unsigned planes : {0u, 2u, 5u, 7u, 255u}) EXPECT_EQ(size(planes, 0), 0u) << planes;
  EXPECT_EQ(size(2, 0, four), 0u);
}

TEST(postproc, headers_that_are_refused) {
  const auto main = [](auto change) {
    job j{.main = counting_curves(4, 6)};
    change(j, *j.main);
    return j.create() != 0;
  };
  EXPECT_TRUE(main([](job&, curve_image& t) { t.version = "002z"; }));
  EXPECT_FALSE(main([](job&, curve_image& t) { t.version = "0030"; }));
  EXPECT_FALSE(main([](job&, curve_image& t) { t.magic = "tld1"; }));
  EXPECT_FALSE(main([](job&, curve_image& t) { t.entries = 4; })) << "1024 the wrong way round";
  EXPECT_FALSE(main([](job&, curve_image& t) { t.curve_count = 3; }));
  EXPECT_FALSE(main([](job&, curve_image& t) { t.output_count = 1; }));
  EXPECT_FALSE(main([](job&, curve_image& t) { t.output_count = 5; }));
  EXPECT_TRUE(main([](job&, curve_image& t) { t.output_count = 0; }));
  EXPECT_FALSE(main([](job& j, curve_image&) { j.planes = 6; })) << "more than curves, although six come out";
  EXPECT_FALSE(main([](job& j, curve_image& t) { t.version = "0010", j.planes = 6; }));
  EXPECT_TRUE(main([](job&, curve_image& t) { t.version = "0010", t.output_count = 5; })) << "byte 9 is not read";

  const auto plane = [](auto change) {
    job j{.plane = {none, random_curves(1)}};
    change(*j.plane[1]);
    return j.create() != 0;
  };
  EXPECT_TRUE(plane([](curve_image& t) { t.output_count = 1; }));
  EXPECT_FALSE(plane([](curve_image& t) { t.output_count = 2; }));
  EXPECT_FALSE(plane([](curve_image& t) { t.curve_count = 2; }));
  EXPECT_TRUE(plane([](curve_image& t) { t.version = "001z"; }));
  EXPECT_FALSE(plane([](curve_image& t) { t.version = "0020"; }));
  EXPECT_FALSE(plane([](curve_image& t) { t.magic = "1dlT"; }));
  EXPECT_FALSE(plane([](curve_image& t) { t.entries = 4; }));
}

TEST(postproc, arguments_that_are_refused) {
  fenced_block mem(128);
  const auto create = [&](std::uint32_t main_on, std::uint32_t sixth_on, int offset) {
    return vrk_create_postproc(4, main_on, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr,
                               sixth_on, nullptr, 0xFFFFFFF0, mem.data() + offset);
  };
  EXPECT_EQ(create(1, 0, 0) + create(0, 1, 0), 0u) << "on, but no table";
  EXPECT_EQ(create(0, 0, 1) + create(0, 0, 2) + create(0, 0, 3), 0u) << "misaligned";
  EXPECT_EQ((job{.planes = 5}).create(mem.data()), 0u);
  EXPECT_TRUE(mem.untouched());
}

// A record of 92 bytes, then sections on 32-byte boundaries of the address.
TEST(postproc, bytes_used_follow_the_layout_at_every_address) {
  const table one = random_curves(1);
  for (const job& j : {job{.planes = 1}, job{.planes = 6, .flags = VRK_OUT16 | VRK_COMPOSE | 0xFFFF0000},
                       job{4, random_curves(4), {one, none, one}, VRK_MID10 | VRK_COMPOSE},
                       job{4, counting_curves(4, 6), {none, one, none, none, one, one}, VRK_IN16}}) {
    const unsigned entries = j.in16() ? 1024 : 256, sample_bytes = j.out16() ? 2 : 1;
    std::vector<unsigned> sections;
    if (j.main) sections.push_back(2 * j.out() * entries);
    const bool wide = j.in16() || (j.main && (j.flags & (VRK_OUT16 | VRK_MID10)) != 0);
    for (const table& t : j.plane) sections.resize(sections.size() + t.has_value(), wide ? 2048 : 512);
    if ((j.flags & VRK_COMPOSE) != 0) sections.push_back(j.out() * entries * sample_bytes);
    sections.push_back(j.out() * sample_bytes);

    for (unsigned offset = 0; offset < 32; offset += 4) {
      unsigned end = offset + 92;
      for (const unsigned section : sections) end = (end + 31) / 32 * 32 + section;
      fenced_block mem(j.create(), offset);
      EXPECT_EQ(j.create(mem.data()), end - offset) << "at " << offset;
      EXPECT_TRUE(mem.fences_intact());
      EXPECT_EQ(vrk_query_postproc_hint(mem.data()), j.flags);
    }
  }
}

TEST(postproc, worked_numbers) {
  job k{.main = random_curves(4), .plane = {random_curves(1)}};
  k.main->curves[3] = make_curve([](unsigned j) { return 24576 + 8 * j; });
  k.plane[0]->curves[0] = make_curve([](unsigned j) { return 65535 - 64 * j; });
  for (const auto& [flags, expected] : {std::pair{VRK_OUT16, 38399u}, {0u, 149u}, {VRK_MID10, 149u}}) {
    k.flags = flags;
    EXPECT_EQ(transformed(k, {80, 0, 0, 0})[0], expected);
  }
  job split{.main = counting_curves(4, 6)};
  for (unsigned c = 0; c < 6; ++c) split.main->curves[c] = make_curve([c](unsigned j) { return c * 8192 + 8 * j; });
  EXPECT_EQ(transformed(split, {80, 80, 80, 80}), (samples{170, 10, 74, 138, 42, 106}));

  const job copy{.flags = VRK_OUT16}, ten_bits{4, {}, {none, random_curves(1)}, VRK_IN16 | VRK_OUT16};
  EXPECT_EQ(transformed(copy, {0x80, 0, 1, 255}), (samples{0x8080, 0, 257, 65535}));
  EXPECT_EQ(transformed(ten_bits, {0x1234, 0, 0xFFFF, 63})[0], 0x1204) << "no curve, beside a plane with one";
  EXPECT_EQ(transformed({.planes = 1, .flags = VRK_IN16}, {0x12FF, 255}), (samples{0x12, 0}));
}

TEST(postproc, every_path_width_and_set_of_tables_equals_the_definition) {
  const table a = random_curves(1, 11), b = random_curves(1, 12), one = random_curves(1), four = random_curves(4),
              six = random_curves(6);
  const std::vector<std::pair<unsigned, table>> mains{{1, none},
                                                      {4, none},
                                                      {6, none},
                                                      {1, one},
                                                      {1, four},
                                                      {1, six},
                                                      {4, four},
                                                      {4, six},
                                                      {6, six},
                                                      {1, counting_curves(1, 0)},
                                                      {1, counting_curves(4, 4)},
                                                      {6, counting_curves(6, 0)},
                                                      {4, counting_curves(4, 6)}};
  const std::array<std::array<table, 6>, 4> planes{{{}, {a, b, a, b, b, a}, {none, a, none, none, b}, {a}}};
  for (const auto& [count, main] : mains) {
    for (const auto& set : planes) {
      for (unsigned bits = 0; bits < 16; ++bits) {
        const job j{count, main, set, (bits & 1) | (bits & 2) << 1 | (bits & 12) << 2};  // in16, out16, mid10, compose
        const samples src = all_levels(j);
        EXPECT_EQ(transformed(j, src), reference{j}.line(src))
            << count << ", table set " << &set - &planes[0] << " " << j.flags;
      }
    }
  }
}

TEST(postproc, in_place_where_pixels_keep_their_length) {
  for (const job& j : {job{}, job{4, {}, {random_curves(1)}}, job{4, random_curves(4), {}, VRK_IN16 | VRK_OUT16}}) {
    fenced_block handle(j.create());
    ASSERT_NE(j.create(handle.data()), 0u);
    const samples src = all_levels(j);
    std::vector<std::uint8_t> line = vrk::test::packed(src, j.in16());
    vrk_xform_postproc(handle.data(), line.data(), std::uint32_t(src.size() / 4), line.data());
    EXPECT_EQ(vrk::test::unpacked(line, j.out16()), reference{j}.line(src));
  }
}

TEST(postproc, calls_that_follow_no_pointer) {
  const auto transform = [](const job& j, std::uint32_t pixels) {
    fenced_block handle(j.create());
    EXPECT_NE(j.create(handle.data()), 0u);
    return vrk_xform_postproc(handle.data(), nullptr, pixels, nullptr);
  };
  EXPECT_EQ(transform({}, 0), 1u);
  EXPECT_EQ(transform({.main = random_curves(4)}, 0), 1u);
  for (const unsigned planes : {0u, 2u, 5u}) EXPECT_EQ(transform({planes, counting_curves(6, 6)}, 1), 0u) << planes;
  EXPECT_EQ(transform({1, counting_curves(1, 4)}, 1), 0u);
  EXPECT_EQ(transform({1, counting_curves(1, 6)}, 1), 0u);
  EXPECT_EQ(transform({1, counting_curves(6, 4)}, 1), 0u);
}

}  // namespace
