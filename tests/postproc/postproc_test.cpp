#include <array>
#include <functional>
#include <optional>
#include <string>

#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::curve_image;
using table = std::optional<curve_image>;
constexpr auto none = std::nullopt;

// A main table that counts the channels itself, as all do but those of version "0010". out: 0 for as many as in. Only
// the split of four needs curves beyond those of its input.
curve_image counting_curves(unsigned in, unsigned out) {
  curve_image image = random_curves(in == 4 ? std::max(in, out) : in);
  image.version = out == 0 ? "0011" : "0020";
  image.curve_count = in;
  image.output_count = out;
  return image;
}

// The arguments of create: called with memory, it makes the call. Images end at an unreadable page, and tables that are
// off lie in one.
struct job {
  unsigned planes = 4;
  table main{};
  std::array<table, 6> plane{};  // K, C, M, Y, fifth, sixth
  unsigned flags = 0;

  std::uint32_t operator()(void* mem) const {
    std::array<std::optional<guarded_copy>, 7> images;
    for (std::size_t t = 0; t < images.size(); ++t) {
      const table& image = t == 0 ? main : plane[t - 1];
      images[t].emplace(image ? image->encode() : bytes{});
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

  const vrk::kit::curve& main_curve(unsigned plane) const {
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

samples transformed(const job& j, const samples& src) {
  const std::size_t pixels = src.size() / j.in();
  const auto transform = [&](void* handle, auto* in, auto* out) {
    return vrk_xform_postproc(handle, in, std::uint32_t(pixels), out);
  };
  return unpacked(handle(j).line(packed(src, j.in16()), pixels * j.out() * (j.out16() ? 2 : 1), transform), j.out16());
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

TEST(postproc, every_path_width_and_set_of_tables_equals_the_definition) {
  const table a = random_curves(1, 11), b = random_curves(1, 12);
  const table mains[] = {none,
                         random_curves(1),
                         random_curves(4),
                         random_curves(6),
                         counting_curves(1, 0),
                         counting_curves(6, 0),
                         counting_curves(4, 4),
                         counting_curves(4, 6)};
  const std::array<table, 6> planes[] = {{}, {a, b, a, b, b, a}, {none, a, none, none, b}, {a}};
  for (const unsigned count : {1, 4, 6}) {
    for (const table& main : mains) {
      if (main && count > main->curve_count.value_or(unsigned(main->curves.size()))) continue;
      for (const auto& set : planes) {
        for (unsigned bits = 0; bits < 16; ++bits) {  // in16, out16, mid10, compose
          const job j{count, main, set, (bits & 1) | (bits & 2) << 1 | (bits & 12) << 2};
          const samples src = all_levels(j);
          EXPECT_EQ(transformed(j, src), reference{j}.line(src))
              << count << " planes, main table " << &main - mains << ", plane tables " << &set - planes << ", flags "
              << j.flags;
        }
      }
    }
  }
}

TEST(postproc, worked_numbers) {
  job split{.main = counting_curves(4, 6)};
  for (unsigned c = 0; c < 6; ++c) {
    for (unsigned j = 0; j < 1024; ++j) split.main->curves[c][j] = std::uint16_t(c * 8192 + 8 * j);
  }
  EXPECT_EQ(transformed(split, {80, 80, 80, 80}), (samples{170, 10, 74, 138, 42, 106}));
}

TEST(postproc, sizes_used_bytes_and_hints) {
  const table one = random_curves(1);
  EXPECT_EQ(job{.planes = 1}(nullptr), 124u);
  EXPECT_EQ(job{.main = random_curves(4)}(nullptr), 2206u);
  EXPECT_EQ((job{6, random_curves(6), {one, one, one, one, one, one}, 0x25}(nullptr)), 37247u);
  for (const job& j : {job{.planes = 1}, job{.planes = 6, .flags = VRK_OUT16 | VRK_COMPOSE | 0xFFFF0000},
                       job{.planes = 0x104, .plane = {one}, .flags = VRK_MID10},  // the low byte counts
                       job{4, random_curves(4), {one}, 0}, job{4, random_curves(6), {one}, VRK_OUT16},
                       job{4, random_curves(4), {one, none, one}, VRK_MID10 | VRK_COMPOSE},
                       job{4, counting_curves(4, 6), {none, one, none, none, one, one}, VRK_IN16}}) {
    const std::size_t entries = j.in16() ? 1024 : 256, sample_bytes = j.out16() ? 2 : 1, out = j.out() & 0xFF;
    std::vector<layout_part> layout;
    if (j.main) layout.push_back({0, 2 * out * entries});
    const bool wide = j.in16() || (j.main && (j.flags & (VRK_OUT16 | VRK_MID10)) != 0);
    for (const table& t : j.plane) layout.resize(layout.size() + t.has_value(), {0, wide ? 2048u : 512u});
    if ((j.flags & VRK_COMPOSE) != 0) layout.push_back({0, out * entries * sample_bytes});
    layout.push_back({0, out * sample_bytes});
    layout[0].packed = 92;
    expect_layout(j, layout);
    EXPECT_EQ(vrk_query_postproc_hint(handle(j).get()), j.flags);
  }
}

TEST(postproc, counts_that_are_refused) {
  for (const unsigned planes : {0u, 2u, 5u, 7u, 255u}) expect_refused(job{planes}, "planes without a main table");
  expect_refused(job{2, random_curves(4)}, "planes beside a table that leaves the count to them");
  expect_refused(job{6, random_curves(4)}, "more planes than curves");
  expect_refused(job{5, counting_curves(4, 6)}, "more planes than curves, although six come out");
  expect_refused(job{4, counting_curves(4, 1)}, "one plane of four");
  expect_refused(job{4, counting_curves(4, 5)}, "five planes");

  // These are taken; but then no pixel is touched.
  const auto transform = [](const job& j, std::uint32_t pixels) {
    return vrk_xform_postproc(handle(j).get(), nullptr, pixels, nullptr);
  };
  for (const unsigned planes : {0u, 2u, 5u}) EXPECT_EQ(transform({planes, counting_curves(6, 6)}, 1), 0u) << planes;
  EXPECT_EQ(transform({1, counting_curves(1, 4)}, 1), 0u);
  EXPECT_EQ(transform({1, counting_curves(1, 6)}, 1), 0u);
  EXPECT_EQ(transform({1, counting_curves(6, 4)}, 1), 0u);
  for (const table& main : {table{}, table{random_curves(4)}}) EXPECT_EQ(transform({4, main}, 0), 1u);
}

}  // namespace
