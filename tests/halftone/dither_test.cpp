#include <algorithm>
#include <array>
#include <numeric>
#include <random>

#include "kit/dither_table.h"
#include "kit/planes.h"
#include "tests/fenced_handle.h"
#include "tests/halftone/halftone_lines.h"
#include "tests/samples.h"
#include "vrk.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::dither_plane;
using vrk::kit::dither_table;
using vrk::kit::table_position;

// A mix of bits, and what is peculiar to its kernel.
struct mix {
  unsigned planes, colour_bits, k_bits;
  std::vector<unsigned> codes{};  // what is written for the levels of a three-level K under k_code3
  bool adds = false;              // levels meet in a byte by addition
};

// Matrices that are no permutation, no power of two and not all of one size.
dither_table make_table(const mix& of, unsigned top, unsigned seed) {
  std::mt19937 random(seed);
  dither_table table;
  for (unsigned p = 0; p < of.planes; ++p) {
    dither_plane& plane = table.planes[table_position[p]];
    plane.bits = p == 0 ? of.k_bits : of.colour_bits;
    plane.width = 3 + 2 * p + unsigned(random() % 14);
    plane.height = 2 + unsigned(random() % 5);
    for (unsigned n = plane.width * plane.height; n != 0; --n) plane.matrix.push_back(std::uint16_t(random() % 200));
    const unsigned levels = std::min(1u << plane.bits, 255u);
    for (unsigned j = 0; j < levels; ++j) {
      plane.level_values.push_back(std::uint16_t(j + 1 == levels ? top : j * top / levels + random() % 2));
    }
  }
  return table;
}

dither_table k_only(unsigned width, unsigned height, samples level_values, unsigned bits) {
  dither_table table;
  table.planes[3] = {width, height, {}, bits, std::move(level_values), samples(width * height)};
  std::iota(table.planes[3].matrix.begin(), table.planes[3].matrix.end(), std::uint16_t{0});
  return table;
}

// By definition, pixel for pixel: no look-up table, no threshold kept.
struct reference {
  const dither_table& table;
  std::uint32_t flags;
  const mix& of;
  bool in16 = (flags & VRK_IN16) != 0;
  unsigned top = in16 ? 1023 : 255;

  unsigned level(const dither_plane& plane, unsigned v, unsigned x, unsigned y) const {
    const unsigned last = unsigned(plane.level_values.size()) - 1;
    std::vector<int> begins(plane.level_values.begin(), plane.level_values.end());
    if (plane.level_values.back() != top) {
      for (unsigned i = 0; i <= last; ++i) begins[i] = int(i == last ? top : i * (top + 1) / last);
    }
    if (v == 0) return 0;
    unsigned j = 0;
    for (unsigned i = 0; i < last; ++i) {
      if (begins[i] <= int(v) && int(v) < begins[i + 1]) j = i;
    }
    if (v == top) j = last - 1;

    const int cells = int(plane.width * plane.height), full = std::max((in16 ? cells : cells / 4) - 1, 1);
    const int m = plane.matrix[y % plane.height * plane.width + x % plane.width];
    const std::int64_t share = std::int64_t{in16 ? m : m / 4} * (begins[j + 1] - begins[j] - 1);
    const double threshold = std::clamp(double(share) / full + 0.5 + begins[j], 0.0, 65535.0);
    return v > unsigned(threshold) ? j + 1 : j;
  }

  lines line(const samples& src, unsigned x, unsigned y) const {
    const bool coded = (flags & VRK_K_CODE3) != 0 && table.planes[3].level_values.size() == 3 && !of.codes.empty();
    lines out(of.planes);
    for (unsigned p = 0; p < of.planes; ++p) {
      const dither_plane& plane = table.planes[table_position[p]];
      const std::size_t pixels = src.size() / of.planes, per_byte = 8 / plane.bits;
      out[p].resize((pixels + per_byte - 1) / per_byte);
      for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned v = src[i * of.planes + p] / (in16 ? 64 : 1), reached = level(plane, v, unsigned(x + i), y);
        const unsigned code = coded && p == 0 ? of.codes[reached] : reached;
        const unsigned placed = code << (per_byte - 1 - i % per_byte) * plane.bits;
        std::uint8_t& byte = out[p][i / per_byte];
        byte = std::uint8_t(of.adds ? byte + placed : byte | placed);
      }
    }
    return out;
  }
};

// The arguments of create: called with memory, it makes the call. The table ends at an unreadable page.
struct job {
  bytes table;
  std::uint32_t flags = 0, line_width = 2000;

  std::uint32_t operator()(void* mem) const {
    guarded_copy image(table);
    return vrk_create_dither(line_width, image.size(), image.data(), flags, mem);
  }
};

void expect_lines_of_definition(const dither_table& table, std::uint32_t flags, const mix& of, unsigned seed) {
  std::mt19937 random(seed);
  handle h(job{table.encode(), flags});
  const reference reference{table, flags, of};
  const unsigned levels = reference.in16 ? 65536 : 256;
  for (const auto& [width, x] : {std::pair{0u, 0u}, {1u, 0u}, {7u, 5u}, {8u, 4u}, {9u, 1999u - 8}, {333u, 17u}}) {
    ASSERT_EQ(vrk_start_dither_block(h.get(), width, x, seed), 1u);
    for (unsigned y = seed; y < seed + 3; ++y) {
      samples src(width * of.planes);
      for (auto& v : src) v = std::uint16_t(random() % 8 == 0 ? (random() % 2) * (levels - 1) : random() % levels);
      const lines expected = reference.line(src, x, y);
      guarded_copy readable(packed(src, reference.in16));
      EXPECT_EQ(fenced_lines(h.get(), readable.data(), expected, y % 2 != 0, vrk_exec_dither, vrk_exec_ditherx),
                expected)
          << of.planes << " planes, " << of.colour_bits << " bits, K " << of.k_bits << ", flags " << flags;
    }
  }
}

TEST(dither, every_mix_equals_the_definition) {
  const std::vector<unsigned> low{0, 1, 3}, high{0, 2, 3};
  const mix mixes[] = {{6, 4, 4},           {6, 2, 2},           {6, 1, 1},           {6, 8, 8, {}, true},
                       {6, 2, 1, {}, true}, {6, 4, 2, {}, true}, {4, 2, 2, low},      {4, 2, 1},
                       {4, 4, 1},           {4, 4, 2, high},     {4, 1, 1, {}, true}, {4, 1, 2, {}, true},
                       {4, 4, 4, {}, true}, {4, 8, 2, {}, true}, {1, 0, 1},           {1, 0, 2, low},
                       {1, 0, 4},           {1, 0, 8, {}, true}};
  for (const mix& of : mixes) {
    for (const std::uint32_t flags : {0u, VRK_IN16, VRK_K_CODE3, VRK_IN16 | VRK_K_CODE3}) {
      const std::uint16_t top = (flags & VRK_IN16) != 0 ? 1023 : 255;
      dither_table table = make_table(of, top, 7 * of.planes + of.k_bits);
      expect_lines_of_definition(table, flags, of, 40);
      if (of.k_bits >= 2) table.planes[3].level_values = {0, std::uint16_t(top / 3), top};
      expect_lines_of_definition(table, flags, of, 41);
      for (auto& plane : table.planes) {  // more levels than the bits can tell, ending elsewhere: an even spread
        if (!plane.level_values.empty()) plane.level_values = samples(plane.bits == 8 ? 255 : (1u << plane.bits) + 3);
      }
      expect_lines_of_definition(table, flags, of, 42);
    }
  }
}

// Levels out of order or beyond the input width, thresholds out of range, matrices too small to spread anything.
TEST(dither, odd_tables_equal_the_definition) {
  for (const std::uint32_t flags : {0u, VRK_IN16}) {
    const std::uint16_t top = flags != 0 ? 1023 : 255;
    const samples odd[] = {{90, top},       {0, 200, 100, top}, {40, 0, top},  {0, 65535, 30, top},
                           {top, top, top}, {0, 100, 200},      {0, 100, 2000}};
    for (const samples& levels : odd) {
      for (const auto& [width, height] : {std::pair{1u, 1u}, {2u, 2u}, {7u, 1u}, {255u, 2u}}) {
        dither_table table = k_only(width, height, levels, 4);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 5);
        for (auto& m : table.planes[3].matrix) m = std::uint16_t(65535 - 97 * m);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 6);
      }
    }
  }
}

TEST(dither, sizes_hold_at_every_address) {
  EXPECT_EQ(job{k_only(4, 4, {0, 255}, 1).encode()}(nullptr), 972u + 256 + 64 + 12 - 4);
  EXPECT_EQ((job{k_only(255, 255, samples(255, 1023), 8).encode(), VRK_IN16}(nullptr)),
            972u + 1024 + 2 * 255 * 65025 + 6 * 255 - 4);
  const job j{make_table({6, 4, 2}, 1023, 1).encode(), VRK_IN16};
  for (unsigned offset = 0; offset < 32; ++offset) EXPECT_GE(handle(j, offset).used(), j(nullptr) - 972);
}

TEST(dither, what_the_queries_tell) {
  dither_table table = make_table({4, 2, 1}, 255, 1);
  table.planes[4] = {1, 1, {}, 4, {0, 255}, {0}};  // in use, but not produced without the sixth
  handle h(job{table.encode(), 0x101, 101});
  EXPECT_EQ(vrk_query_dither_hint(h.get()), 0x111u);
  std::uint8_t bits[6];
  vrk_query_dither_bitlen(h.get(), bits);
  vrk_ht_info info{};
  EXPECT_EQ(vrk_query_dither_info(nullptr, &info) + vrk_query_dither_info(h.get(), nullptr) + info.method, 0u);
  EXPECT_EQ(vrk_query_dither_info(h.get(), &info), 1u);
  expect_info(info, bits,
              {.method = 2,
               .plane_count = 4,
               .plane_bits = {1, 2, 2, 2, 4, 1},
               .line_bytes = {13, 26, 26, 26, 51, 13},
               .same_line_bytes = 0,
               .dot_expansion = 0,
               .plane_scale = {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {0, 0}},
               .same_scale = 1});
  table.planes[0] = {};
  vrk_query_dither_info(handle(job{table.encode()}).get(), &info);
  EXPECT_TRUE(info.plane_count == 1 && info.same_line_bytes == 1) << "K alone";
}

TEST(dither, blocks_fit_the_line) {
  handle h(job{k_only(4, 4, {0, 255}, 1).encode(), 0, 101});
  EXPECT_EQ(vrk_start_dither_block(h.get(), 41, 60, 0), 1u);
  EXPECT_EQ(vrk_start_dither_block(h.get(), 41, 61, 0), 0u);
  EXPECT_EQ(vrk_start_dither_block(h.get(), 2, 0xFFFFFFFF, 0), 0u);
}

}  // namespace
