#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "kit/curve_image.h"
#include "tests/guard.h"
#include "vrk.h"

namespace {

using vrk::kit::curve;
using vrk::kit::curve_image;
using vrk::test::fenced_block;
using vrk::test::guarded_copy;
using samples = std::vector<unsigned>;
constexpr auto none = std::nullopt;

template <class Level>
curve make_curve(Level level) {
  curve c{};
  for (unsigned j = 0; j < c.size(); ++j) c[j] = std::uint16_t(level(j));
  return c;
}

// Curves without a pattern that a wrong index or shift could hit by luck.
curve_image random_curves(unsigned count, unsigned seed) {
  std::mt19937 random(seed);
  curve_image image;
  for (unsigned k = 0; k < count; ++k) image.curves.push_back(make_curve([&](unsigned) { return random(); }));
  return image;
}

curve_image counting_curves(unsigned in, unsigned out, unsigned seed) {  // the table counts the channels
  curve_image image = random_curves(std::max(in, out), seed);
  image.version = "0020";
  image.curve_count = in;
  image.output_count = out;
  return image;
}

// The arguments of create. Images end at an unreadable page, and tables that are off lie in one.
struct job {
  unsigned planes = 4;
  std::optional<curve_image> main{};
  std::array<std::optional<curve_image>, 6> plane{};  // K, C, M, Y, fifth, sixth
  unsigned flags = 0;

  std::uint32_t create(void* mem) const {
    std::array<std::optional<guarded_copy>, 7> copies;
    std::array<const void*, 7> images{};
    std::array<std::uint32_t, 7> on{};
    for (std::size_t t = 0; t < images.size(); ++t) {
      const auto& image = t == 0 ? main : plane[t - 1];
      copies[t].emplace(image ? image->encode() : vrk::kit::bytes{});
      images[t] = copies[t]->data();
      on[t] = image ? 1u << 31 >> t : 0;
    }
    return vrk_create_postproc(planes, on[0], images[0], on[1], images[1], on[2], images[2], on[3], images[3], on[4],
                               images[4], on[5], images[5], on[6], images[6], flags, mem);
  }

  bool in16() const { return (flags & VRK_IN16) != 0; }
  bool out16() const { return (flags & VRK_OUT16) != 0; }
  bool counts_by_table() const { return main && main->version != "0010"; }
  unsigned in_channels() const { return counts_by_table() ? *main->curve_count : planes; }
  unsigned out_channels() const {
    return !counts_by_table() ? planes : main->output_count == 0 ? in_channels() : main->output_count;
  }
};

// By definition, sample for sample: from the images, by levels of 10 and 16 bits.
struct reference {
  const job& of;

  const curve& main_curve(unsigned plane) const {
    const std::size_t curves = of.counts_by_table() ? of.out_channels() : of.main->curves.size();
    const std::string order = curves == 1 ? "K" : curves == 4 ? "CMYK" : "C5M6YK";
    return of.main->curves[order.find("KCMY56"[plane])];
  }

  unsigned output(unsigned plane, unsigned sample) const {
    const auto ten_bits = [](unsigned v8) { return v8 * 4 + v8 / 64; };
    const auto out = [&](unsigned v16) { return of.out16() ? v16 : v16 / 256; };
    const unsigned level = of.in16() ? sample / 64 : ten_bits(sample);
    const auto& plane_curve = of.plane[plane];
    if (!of.main && !plane_curve) {
      if (of.in16()) return out(level * 64 + level / 16);
      return out(sample * 257);
    }
    if (!of.main) return out(plane_curve->curves[0][level]);
    const unsigned v16 = main_curve(plane)[level];
    if (!plane_curve) return out(v16);
    const bool by_ten_bits = of.in16() || of.out16() || (of.flags & VRK_MID10) != 0;
    return out(plane_curve->curves[0][by_ten_bits ? v16 / 64 : ten_bits(v16 / 256)]);
  }

  samples line(const samples& src) const {
    const unsigned in = of.in_channels(), out = of.out_channels();
    samples dst;
    for (std::size_t first = 0; first < src.size(); first += in) {
      for (unsigned p = 0; p < out; ++p) {
        const unsigned from = p < in ? p : p == 4 ? 1 : 2;
        dst.push_back(output(p, src[first + from]));
      }
    }
    return dst;
  }
};

void write_samples(const samples& values, bool words, std::uint8_t* at) {
  for (const unsigned v : values) {
    const std::uint16_t word = std::uint16_t(v);
    if (words) {
      std::memcpy(at, &word, 2);
    } else {
      *at = std::uint8_t(v);
    }
    at += words ? 2 : 1;
  }
}

samples read_samples(const std::uint8_t* at, std::size_t count, bool words) {
  samples values(count);
  for (unsigned& v : values) {
    std::uint16_t word = *at;
    if (words) std::memcpy(&word, at, 2);
    v = word;
    at += words ? 2 : 1;
  }
  return values;
}

// Creates the handle of a job and sends lines through it: from the end of a readable page, to a fenced odd address.
class postproc_stage {
 public:
  explicit postproc_stage(const job& of) : of_(of), handle_(of.create(nullptr)) {
    EXPECT_NE(of.create(handle_.data()), 0u);
    EXPECT_TRUE(handle_.fences_intact());
  }

  void* handle() { return handle_.data(); }

  samples line(const samples& src) {
    const std::size_t width_in = of_.in16() ? 2 : 1, width_out = of_.out16() ? 2 : 1;
    const std::size_t pixels = src.size() / of_.in_channels(), count = pixels * of_.out_channels();
    std::vector<std::uint8_t> packed(src.size() * width_in);
    write_samples(src, of_.in16(), packed.data());
    guarded_copy readable(packed);
    fenced_block dst(count * width_out, 1);
    EXPECT_EQ(vrk_xform_postproc(handle(), readable.data(), std::uint32_t(pixels), dst.data()), 1u);
    EXPECT_TRUE(dst.fences_intact());
    return read_samples(dst.data(), count, of_.out16());
  }

 private:
  const job& of_;
  fenced_block handle_;
};

// Every level of the input width in every channel, channels out of step with each other, then equal pixels.
samples all_levels(const job& of) {
  samples src;
  const unsigned levels = of.in16() ? 65536 : 256, step = of.in16() ? 23 : 1;
  for (unsigned v = 0; v < levels + 300; v += step) {
    for (unsigned p = 0; p < of.in_channels(); ++p) src.push_back((v + p * (levels / 5)) % levels);
  }
  for (unsigned n = 0; n < 5 * of.in_channels(); ++n) src.push_back(levels - 1);
  return src;
}

TEST(postproc, sizes_follow_the_size_rule) {
  const auto size = [](job j) { return j.create(nullptr); };
  EXPECT_EQ(size({.planes = 1}), 124u);
  EXPECT_EQ(size({.planes = 4}), 127u);
  EXPECT_EQ(size({.planes = 6}), 129u);
  EXPECT_EQ(size({.planes = 1, .flags = VRK_OUT16}), 125u);
  EXPECT_EQ(size({.planes = 4, .flags = VRK_OUT16}), 131u);
  EXPECT_EQ(size({.planes = 6, .flags = VRK_OUT16}), 135u);
  EXPECT_EQ(size({.planes = 0x104}), 127u) << "only the low byte counts";
  EXPECT_EQ(size({.planes = 4, .main = random_curves(4, 1)}), 2206u);
  const curve_image one = random_curves(1, 2);
  EXPECT_EQ(size({6, random_curves(6, 1), {one, one, one, one, one, one}, VRK_IN16 | VRK_OUT16 | VRK_COMPOSE}), 37247u);
  for (const unsigned planes : {0u, 2u, 3u, 5u, 7u, 255u}) EXPECT_EQ(size({.planes = planes}), 0u) << planes;
}

TEST(postproc, headers_that_are_refused) {
  const auto main_with = [](auto change) {
    job j{.planes = 4, .main = counting_curves(4, 6, 1)};
    change(j);
    return j.create(nullptr);
  };
  const auto plane_with = [](auto change) {
    job j{.planes = 4, .plane = {none, random_curves(1, 1)}};
    change(*j.plane[1]);
    return j.create(nullptr);
  };
  EXPECT_NE(main_with([](job&) {}), 0u);
  EXPECT_EQ(main_with([](job& j) { j.main->magic = "tld1"; }), 0u);
  EXPECT_NE(main_with([](job& j) { j.main->version = "002z"; }), 0u);
  EXPECT_EQ(main_with([](job& j) { j.main->version = "0030"; }), 0u);
  EXPECT_EQ(main_with([](job& j) { j.main->entries = 4; }), 0u) << "1024 the wrong way round";
  EXPECT_EQ(main_with([](job& j) { j.main->curve_count = 3; }), 0u);
  EXPECT_EQ(main_with([](job& j) { j.main->output_count = 5; }), 0u);
  EXPECT_EQ(main_with([](job& j) { j.main->output_count = 1; }), 0u);
  EXPECT_NE(main_with([](job& j) { j.main->output_count = 0; }), 0u);
  EXPECT_EQ(main_with([](job& j) { j.planes = 6; }), 0u) << "more planes than curves, whatever comes out";
  EXPECT_EQ(main_with([](job& j) { j.main->version = "0010", j.planes = 6; }), 0u);
  EXPECT_NE(main_with([](job& j) { j.main->version = "0010", j.main->output_count = 5; }), 0u) << "byte 9 is not read";
  EXPECT_EQ(main_with([](job& j) { j.main->version = "0010", j.planes = 2; }), 0u) << "no such pixel";

  EXPECT_NE(plane_with([](curve_image&) {}), 0u);
  EXPECT_NE(plane_with([](curve_image& image) { image.output_count = 1; }), 0u);
  EXPECT_EQ(plane_with([](curve_image& image) { image.output_count = 2; }), 0u);
  EXPECT_EQ(plane_with([](curve_image& image) { image.curve_count = 2; }), 0u);
  EXPECT_NE(plane_with([](curve_image& image) { image.version = "001z"; }), 0u);
  EXPECT_EQ(plane_with([](curve_image& image) { image.version = "0020"; }), 0u);
  EXPECT_EQ(plane_with([](curve_image& image) { image.magic = "1dlT"; }), 0u);
  EXPECT_EQ(plane_with([](curve_image& image) { image.entries = 4; }), 0u);
}

TEST(postproc, arguments_that_are_refused) {
  const auto create = [](std::uint32_t main_on, std::uint32_t sixth_on, void* mem) {
    return vrk_create_postproc(4, main_on, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr,
                               sixth_on, nullptr, 0, mem);
  };
  EXPECT_EQ(create(1, 0, nullptr), 0u) << "on, but no table";
  EXPECT_EQ(create(0, 1, nullptr), 0u);
  fenced_block mem(256);
  EXPECT_EQ(create(1, 0, mem.data()), 0u);
  EXPECT_EQ((job{.planes = 5}).create(mem.data()), 0u);
  for (const int off : {1, 2, 3}) EXPECT_EQ(create(0, 0, mem.data() + off), 0u) << off;
  EXPECT_TRUE(mem.untouched());
  EXPECT_NE(create(0, 0, mem.data()), 0u);
}

// The bytes used are those of the layout: a record of 92, then sections on 32-byte boundaries of the address.
TEST(postproc, bytes_used_follow_the_layout_at_every_address) {
  const curve_image one = random_curves(1, 2);
  for (const job& j : {job{.planes = 1}, job{.planes = 6, .flags = VRK_OUT16 | VRK_COMPOSE},
                       job{4, random_curves(4, 1), {one, none, one}, VRK_MID10 | VRK_COMPOSE},
                       job{4, counting_curves(4, 6, 1), {none, one, none, none, one, one}, VRK_IN16}}) {
    const unsigned n = j.out_channels(), e = j.in16() ? 1024 : 256, b = j.out16() ? 2 : 1;
    std::vector<unsigned> sections;
    if (j.main) sections.push_back(2 * n * e);
    const bool wide = j.in16() || (j.main && (j.flags & (VRK_OUT16 | VRK_MID10)) != 0);
    for (const auto& table : j.plane) {
      if (table) sections.push_back(wide ? 2048 : 512);
    }
    if ((j.flags & VRK_COMPOSE) != 0) sections.push_back(n * e * b);
    sections.push_back(n * b);

    const std::uint32_t size = j.create(nullptr);
    for (unsigned offset = 0; offset < 32; offset += 4) {
      unsigned end = offset + 92;
      for (const unsigned section : sections) end = (end + 31) / 32 * 32 + section;
      fenced_block mem(size, offset);
      EXPECT_EQ(j.create(mem.data()), end - offset) << "at " << offset;
      EXPECT_TRUE(mem.fences_intact());
    }
  }
}

TEST(postproc, the_hint_is_the_word_as_given) {
  const job j{.flags = 0xFFFFFFF0u};
  EXPECT_EQ(vrk_query_postproc_hint(postproc_stage(j).handle()), 0xFFFFFFF0u);
}

TEST(postproc, worked_numbers) {
  curve_image main = random_curves(4, 1), k = random_curves(1, 2);
  main.curves[3] = make_curve([](unsigned j) { return 24576 + 8 * j; });
  k.curves[0] = make_curve([](unsigned j) { return 65535 - 64 * j; });
  for (const auto& [flags, expected] :
       {std::pair{VRK_OUT16, 38399u}, std::pair{0u, 149u}, std::pair{VRK_MID10, 149u}}) {
    const job j{4, main, {k}, flags};
    EXPECT_EQ(postproc_stage(j).line({80, 0, 0, 0})[0], expected);
  }

  job split{.main = counting_curves(4, 6, 1)};
  for (unsigned k = 0; k < 6; ++k) split.main->curves[k] = make_curve([k](unsigned j) { return k * 8192 + 8 * j; });
  EXPECT_EQ(postproc_stage(split).line({80, 80, 80, 80}), (samples{170, 10, 74, 138, 42, 106}));

  const job c_curve{4, {}, {none, random_curves(1, 1)}, VRK_IN16 | VRK_OUT16};
  EXPECT_EQ(postproc_stage(c_curve).line({0x1234, 0, 0x1234, 0xFFFF})[0], 0x1204u) << "ten bits beside a curve";
  EXPECT_EQ(postproc_stage(c_curve).line({0x1234, 0, 0x1234, 0xFFFF})[3], 0xFFFFu);
}

TEST(postproc, without_curves_only_the_width_changes) {
  const samples bytes{0, 1, 0x80, 255, 127, 254}, words{0, 0x1234, 0x80FF, 0xFFFF, 63, 0xFF00};
  for (const unsigned planes : {1u, 6u}) {
    for (const unsigned extra : {0u, VRK_COMPOSE, VRK_MID10}) {
      const auto line = [&](unsigned flags, const samples& src) {
        const job j{.planes = planes, .flags = flags | extra};
        return postproc_stage(j).line(src);
      };
      EXPECT_EQ(line(0, bytes), bytes);
      EXPECT_EQ(line(VRK_OUT16, bytes), (samples{0, 257, 0x8080, 65535, 0x7F7F, 0xFEFE}));
      EXPECT_EQ(line(VRK_IN16, words), (samples{0, 0x12, 0x80, 255, 0, 255}));
      EXPECT_EQ(line(VRK_IN16 | VRK_OUT16, words), words);
    }
  }
  const job fifth_only{4, {}, {none, none, none, none, random_curves(1, 1)}, VRK_IN16 | VRK_OUT16};
  EXPECT_EQ(postproc_stage(fifth_only).line({1, 2, 3, 0x1234}), (samples{1, 2, 3, 0x1234}))
      << "not a plane of the path";
}

TEST(postproc, every_path_width_and_set_of_tables_equals_the_definition) {
  using table = std::optional<curve_image>;
  const table a = random_curves(1, 11), b = random_curves(1, 12);
  const std::array<std::array<table, 6>, 4> plane_sets{{{}, {a, b, a, b, b, a}, {none, a, none, none, b}, {a}}};
  for (const auto& [planes, main] :
       {std::pair{1u, table()}, std::pair{4u, table()}, std::pair{6u, table()},
        std::pair{1u, table(random_curves(1, 1))}, std::pair{1u, table(random_curves(4, 1))},
        std::pair{1u, table(random_curves(6, 1))}, std::pair{4u, table(random_curves(4, 1))},
        std::pair{4u, table(random_curves(6, 1))}, std::pair{6u, table(random_curves(6, 1))},
        std::pair{1u, table(counting_curves(1, 0, 1))}, std::pair{1u, table(counting_curves(4, 4, 1))},
        std::pair{6u, table(counting_curves(6, 0, 1))}, std::pair{4u, table(counting_curves(4, 6, 1))}}) {
    for (std::size_t set = main ? 0 : 1; set < plane_sets.size(); ++set) {
      for (unsigned bits = 0; bits < 16; ++bits) {
        const unsigned flags = (bits & 1) * VRK_IN16 | (bits >> 1 & 1) * VRK_OUT16 | (bits >> 2 & 1) * VRK_MID10 |
                               (bits >> 3 & 1) * VRK_COMPOSE;
        const job j{planes, main, plane_sets[set], flags};
        if (!main && set == 2 && planes == 1) continue;  // the one plane has no curve: the copy form
        const samples src = all_levels(j);
        EXPECT_EQ(postproc_stage(j).line(src), reference{j}.line(src)) << planes << " " << set << " " << flags;
      }
    }
  }
}

TEST(postproc, in_place_where_pixels_keep_their_length) {
  for (const unsigned flags : {0u, VRK_IN16 | VRK_OUT16}) {
    for (const auto& k : {std::optional<curve_image>{}, std::optional(random_curves(1, 3))}) {
      const job j{4, {}, {k}, flags};
      postproc_stage stage(j);
      const samples src = all_levels(j);
      std::vector<std::uint8_t> line(src.size() * 2);
      write_samples(src, j.in16(), line.data());
      EXPECT_EQ(vrk_xform_postproc(stage.handle(), line.data(), std::uint32_t(src.size() / 4), line.data()), 1u);
      EXPECT_EQ(read_samples(line.data(), src.size(), j.out16()), stage.line(src));
    }
  }
}

TEST(postproc, a_count_of_0_follows_no_pointer) {
  guarded_copy nothing({});
  for (const job& j : {job{}, job{.main = random_curves(4, 1)}}) {
    postproc_stage stage(j);
    EXPECT_EQ(vrk_xform_postproc(stage.handle(), nothing.end(), 0, nothing.end()), 1u);
  }
}

TEST(postproc, handles_that_cannot_transform) {
  const auto table = [](unsigned in, unsigned out) { return std::optional(counting_curves(in, out, 1)); };
  for (const job& j : {job{5, table(6, 6)}, job{0, table(6, 6)}, job{2, table(4, 6)},  // planes is no channel count
                       job{1, table(1, 4)}, job{1, table(1, 6)}, job{4, table(6, 4)}}) {
    postproc_stage stage(j);
    const std::vector<std::uint8_t> src(6);
    fenced_block dst(6);
    EXPECT_EQ(vrk_xform_postproc(stage.handle(), src.data(), 1, dst.data()), 0u);
    EXPECT_EQ(vrk_xform_postproc(stage.handle(), src.data(), 0, dst.data()), 0u);
    EXPECT_TRUE(dst.untouched());
  }
}

TEST(postproc, the_transform_only_reads_its_handle) {
  const job j{4, counting_curves(4, 6, 1), {random_curves(1, 2)}, VRK_COMPOSE | VRK_OUT16};
  fenced_block mem(j.create(nullptr));
  ASSERT_NE(j.create(mem.data()), 0u);
  const std::vector<std::uint8_t> before(mem.contents().begin(), mem.contents().end());
  const std::array<std::uint8_t, 8> src{1, 2, 3, 4, 5, 6, 7, 8};
  std::array<std::uint8_t, 24> dst{};
  vrk_xform_postproc(mem.data(), src.data(), 2, dst.data());
  vrk_free_postproc(mem.data());
  EXPECT_TRUE(std::equal(before.begin(), before.end(), mem.contents().begin()));
}

}  // namespace
