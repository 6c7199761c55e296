#include "tests/postproc/postproc_reference.h"

namespace {

using namespace vrk::test;
using job = postproc_job;
using table = curve_table;
constexpr auto none = std::nullopt;

samples transformed(const job& j, const samples& src) {
  const std::size_t pixels = src.size() / j.in();
  const auto transform = [&](void* handle, auto* in, auto* out) {
    return vrk_xform_postproc(handle, in, std::uint32_t(pixels), out);
  };
  return unpacked(handle(j).line(packed(src, j.in16()), pixels * j.out() * (j.out16() ? 2 : 1), transform), j.out16());
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
          EXPECT_EQ(transformed(j, src), postproc_reference{j}.line(src))
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
