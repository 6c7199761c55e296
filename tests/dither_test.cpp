#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "kit/dither_table.h"
#include "kit/planes.h"
#include "tests/guard.h"
#include "tests/samples.h"
#include "vrk.h"

namespace {

using vrk::kit::bytes;
using vrk::kit::dither_plane;
using vrk::kit::dither_table;
using vrk::kit::table_position;
using vrk::test::fenced_block;
using vrk::test::guarded_copy;
using vrk::test::samples;
using lines = std::array<bytes, 6>;

// Planes in record order; matrices that are no permutation, no power of two and not all of one size.
dither_table make_table(unsigned planes, unsigned colour_bits, unsigned k_bits, unsigned top, unsigned seed) {
  std::mt19937 random(seed);
  std::array<dither_plane, 6> record{};
  for (unsigned p = 0; p < planes; ++p) {
    dither_plane& plane = record[p];
    plane.bits = p == 0 ? k_bits : colour_bits;
    plane.width = 3 + 2 * p + unsigned(random() % 14);
    plane.height = 2 + unsigned(random() % 5);
    for (unsigned n = plane.width * plane.height; n != 0; --n) plane.matrix.push_back(std::uint16_t(random() % 200));
    const unsigned levels = std::min(1u << plane.bits, 255u);
    for (unsigned j = 0; j + 1 < levels; ++j)
      plane.level_values.push_back(std::uint16_t(j * top / levels + random() % 2));
    plane.level_values.push_back(std::uint16_t(top));
  }
  dither_table table;
  table.planes = vrk::kit::in_table_order(record);
  return table;
}

dither_table k_only(unsigned width, unsigned height, samples level_values, unsigned bits) {
  dither_plane k{width, height, {}, bits, std::move(level_values), {}};
  for (unsigned cell = 0; cell < width * height; ++cell) k.matrix.push_back(std::uint16_t(cell));
  dither_table table;
  table.planes[3] = k;
  return table;
}

std::uint32_t size_of(const dither_table& table, std::uint32_t flags = 0) {
  guarded_copy image(table.encode());
  return vrk_create_dither(100, image.size(), image.data(), flags, nullptr);
}

// By definition, pixel for pixel: no look-up table, no threshold kept.
struct reference {
  const dither_table& table;
  std::uint32_t flags;

  unsigned top() const { return (flags & VRK_IN16) != 0 ? 1023 : 255; }

  unsigned level(const dither_plane& plane, unsigned v, unsigned x, unsigned y) const {
    const unsigned last = unsigned(plane.level_values.size()) - 1;
    std::vector<int> begins(plane.level_values.begin(), plane.level_values.end());
    if (plane.level_values.back() != top()) {
      for (unsigned i = 0; i <= last; ++i) begins[i] = int(i == last ? top() : i * (top() + 1) / last);
    }
    if (v == 0) return 0;
    unsigned j = 0;
    for (unsigned i = 0; i < last; ++i) {
      if (begins[i] <= int(v) && int(v) < begins[i + 1]) j = i;
    }
    if (v == top()) j = last - 1;

    const bool in16 = (flags & VRK_IN16) != 0;
    const int cells = int(plane.width * plane.height), full = std::max((in16 ? cells : cells / 4) - 1, 1);
    const int m = plane.matrix[y % plane.height * plane.width + x % plane.width];
    const std::int64_t share = std::int64_t{in16 ? m : m / 4} * (begins[j + 1] - begins[j] - 1);
    const double threshold = std::clamp(double(share) / full + 0.5 + begins[j], 0.0, 65535.0);
    return v > unsigned(threshold) ? j + 1 : j;
  }

  // codes: what is written for the levels of K, where not the level itself; adds: how levels meet in a byte.
  lines dithered(const samples& src, unsigned planes, unsigned x, unsigned y, const std::vector<unsigned>& codes,
                 bool adds) const {
    lines out;
    for (unsigned p = 0; p < planes; ++p) {
      const dither_plane& plane = table.planes[table_position[p]];
      const std::size_t pixels = src.size() / planes, per_byte = 8 / plane.bits;
      out[p].resize((pixels + per_byte - 1) / per_byte);
      for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned v = src[i * planes + p] / ((flags & VRK_IN16) != 0 ? 64 : 1);
        unsigned written = level(plane, v, unsigned(x + i), y);
        if (p == 0 && !codes.empty()) written = codes[written];
        written <<= (per_byte - 1 - i % per_byte) * plane.bits;
        std::uint8_t& byte = out[p][i / per_byte];
        byte = std::uint8_t(adds ? byte + written : byte | written);
      }
    }
    return out;
  }
};

// A handle and its outputs: samples end at an unreadable page, lines are fenced, planes that are not covered are null.
class dither_stage {
 public:
  dither_stage(const dither_table& table, std::uint32_t flags, std::uint32_t line_width = 2000)
      : flags_(flags), image_(table.encode()), mem_(create(line_width, nullptr)) {
    EXPECT_NE(create(line_width, mem_.data()), 0u);
    EXPECT_TRUE(mem_.fences_intact());
    vrk_query_dither_info(handle(), &info);
  }

  void* handle() { return mem_.data(); }

  lines line(const samples& src) {
    guarded_copy readable(vrk::test::packed(src, (flags_ & VRK_IN16) != 0));
    std::vector<fenced_block> out;
    std::array<std::uint8_t*, 6> at{};
    for (unsigned p = 0; p < info.plane_count; ++p) {
      out.emplace_back((src.size() / info.plane_count * info.plane_bits[p] + 7) / 8, p);
    }
    for (unsigned p = 0; p < info.plane_count; ++p) at[p] = out[p].data();
    EXPECT_EQ(vrk_exec_dither(handle(), readable.data(), at[0], at[1], at[2], at[3], at[4], at[5]), 1u);
    lines written;
    for (unsigned p = 0; p < info.plane_count; ++p) {
      EXPECT_TRUE(out[p].fences_intact()) << "plane " << p;
      written[p].assign(out[p].contents().begin(), out[p].contents().end());
    }
    return written;
  }

  vrk_ht_info info{};

 private:
  std::uint32_t create(std::uint32_t line_width, void* mem) {
    return vrk_create_dither(line_width, image_.size(), image_.data(), flags_, mem);
  }

  std::uint32_t flags_;
  guarded_copy image_;
  fenced_block mem_;
};

TEST(dither, tables_that_are_refused) {
  const auto with = [](auto change) {
    dither_table table = make_table(4, 2, 1, 255, 1);
    change(table);
    return size_of(table);
  };
  EXPECT_NE(with([](dither_table&) {}), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.magic = "ditH"; }), 0u);
  EXPECT_NE(with([](dither_table& t) { t.version = "001z"; }), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.version = "0020"; }), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.planes[0].width = 0; }), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.planes[1].height = 0; }), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.planes[2].level_values = {255}; }), 0u) << "one level";
  for (const unsigned bits : {0u, 3u, 5u, 16u}) {
    EXPECT_EQ(with([&](dither_table& t) { t.planes[3].bits = bits; }), 0u);
    EXPECT_NE(with([&](dither_table& t) { t.planes[4].bits = bits; }), 0u) << "absent: its bits do not matter";
  }
  EXPECT_NE(with([](dither_table& t) { t.planes[0] = {}; }), 0u) << "K alone counts then";
  EXPECT_EQ(with([](dither_table& t) { t.planes[0] = t.planes[3] = {}; }), 0u) << "no K";
  EXPECT_NE(with([](dither_table& t) { t.planes[4] = t.planes[5] = t.planes[0]; }), 0u);
  EXPECT_EQ(with([](dither_table& t) { t.planes[4] = t.planes[5] = t.planes[0], t.planes[1] = {}; }), 0u) << "no M";

  fenced_block mem(20000);
  const bytes image = make_table(4, 2, 1, 255, 1).encode();
  for (std::size_t length = 0; length < image.size(); ++length) {
    guarded_copy prefix({image.data(), length});
    EXPECT_EQ(vrk_create_dither(9, prefix.size(), prefix.data(), 0, nullptr), 0u) << length;
    EXPECT_EQ(vrk_create_dither(9, prefix.size(), prefix.data(), 0, mem.data()), 0u) << length;
  }
  EXPECT_EQ(vrk_create_dither(9, 100, nullptr, 0, mem.data()), 0u);
  EXPECT_EQ(vrk_create_dither(9, std::uint32_t(image.size()), image.data(), 0, mem.data() + 2), 0u) << "misaligned";
  EXPECT_TRUE(mem.untouched());
}

TEST(dither, sizes_hold_at_every_address) {
  EXPECT_EQ(size_of(k_only(4, 4, {0, 255}, 1)), 972u + 256 + 64 + 12 - 4);
  EXPECT_EQ(size_of(k_only(255, 255, samples(255, 1023), 8), VRK_IN16), 972u + 1024 + 2 * 255 * 65025 + 6 * 255 - 4);
  const bytes image = make_table(6, 4, 2, 1023, 1).encode();
  const auto create = [&](void* mem) {
    return vrk_create_dither(9, std::uint32_t(image.size()), image.data(), VRK_IN16, mem);
  };
  for (unsigned offset = 0; offset < 32; offset += 4) {
    fenced_block mem(create(nullptr), offset);
    const std::uint32_t used = create(mem.data());
    EXPECT_LE(used, create(nullptr));
    EXPECT_GE(used, create(nullptr) - 972);
    EXPECT_TRUE(mem.fences_intact()) << offset;
  }
}

TEST(dither, worked_numbers) {
  dither_stage stage(k_only(4, 4, {0, 255}, 1), 0, 16);  // thresholds 0, 85, 169, 254 by row
  EXPECT_EQ(vrk_start_dither_block(stage.handle(), 9, 8, 0), 0u) << "one pixel too wide";
  EXPECT_EQ(vrk_start_dither_block(stage.handle(), 2, 0xFFFFFFFF, 0), 0u);
  EXPECT_EQ(vrk_start_dither_block(stage.handle(), 9, 7, 1), 1u);
  EXPECT_EQ(stage.line(samples(9, 85))[0], (bytes{0, 0}));
  EXPECT_EQ(stage.line(samples(9, 255))[0], (bytes{0xFF, 0x80})) << "the ninth pixel in the top bit";
  EXPECT_EQ(stage.line(samples(9, 255))[0], (bytes{0xFF, 0x80}));
  EXPECT_EQ(stage.line(samples(9, 86))[0], (bytes{0xFF, 0x80})) << "row 0 again";
  EXPECT_EQ(stage.line(samples(9, 86))[0], (bytes{0xFF, 0x80}));
  EXPECT_EQ(stage.line(samples(9, 0))[0], (bytes{0, 0}));

  dither_stage words(k_only(4, 4, {0, 1023}, 1), VRK_IN16);
  vrk_start_dither_block(words.handle(), 4, 5, 3);
  EXPECT_EQ(words.line({63, 64, 64 * 818, 65535})[0], (bytes{0x10})) << "ranks 13, 14, 15, 12: 886, 954, 1022, 818";
  vrk_start_dither_block(words.handle(), 4, 5, 3);
  EXPECT_EQ(words.line({64 * 887, 64 * 954, 65535, 64 * 819})[0], (bytes{0xB0}));
}

TEST(dither, what_the_queries_tell) {
  dither_table table = make_table(4, 2, 1, 255, 1);
  table.planes[4].bits = 4;  // absent
  dither_stage stage(table, 0x101, 101);
  EXPECT_EQ(vrk_query_dither_hint(stage.handle()), 0x111u);
  std::array<std::uint8_t, 6> bits{};
  vrk_query_dither_bitlen(stage.handle(), bits.data());
  EXPECT_EQ(bits, (std::array<std::uint8_t, 6>{1, 2, 2, 2, 4, 1}));
  const vrk_ht_info& info = stage.info;
  EXPECT_EQ(info.method, 2u);
  EXPECT_EQ(info.plane_count, 4u);
  EXPECT_TRUE(std::equal(bits.begin(), bits.end(), info.plane_bits));
  EXPECT_EQ(info.line_bytes[0], 13u);
  EXPECT_EQ(info.line_bytes[1], 26u);
  EXPECT_EQ(info.same_line_bytes, 0u);
  EXPECT_EQ(info.dot_expansion, 0u);
  EXPECT_EQ(info.plane_scale[3].scale_x + info.plane_scale[3].scale_y, 2u);
  EXPECT_EQ(info.plane_scale[4].scale_x + info.plane_scale[4].scale_y, 0u);
  EXPECT_EQ(info.same_scale, 1u);
  EXPECT_EQ(dither_stage(k_only(4, 4, {0, 255}, 1), 0).info.same_line_bytes, 1u);
  vrk_ht_info untouched{};
  EXPECT_EQ(vrk_query_dither_info(nullptr, &untouched), 0u);
  EXPECT_EQ(untouched.method, 0u);
  EXPECT_EQ(vrk_query_dither_info(stage.handle(), nullptr), 0u);
}

struct kernel_case {
  unsigned planes, colour_bits, k_bits;
  std::vector<unsigned> codes{};  // of a three-level K under k_code3
  bool adds = false;              // a mix without a kernel of its own
};

void expect_lines_of_definition(const dither_table& table, std::uint32_t flags, const kernel_case& c, unsigned seed) {
  std::mt19937 random(seed);
  dither_stage stage(table, flags);
  ASSERT_EQ(stage.info.plane_count, c.planes);
  const unsigned levels = (flags & VRK_IN16) != 0 ? 65536 : 256;
  for (const auto& [width, x] : {std::pair{0u, 0u}, {1u, 0u}, {7u, 5u}, {8u, 4u}, {9u, 1999u - 8}, {333u, 17u}}) {
    ASSERT_EQ(vrk_start_dither_block(stage.handle(), width, x, seed), 1u);
    for (unsigned y = seed; y < seed + 3; ++y) {
      samples src(width * c.planes);
      for (auto& v : src) v = std::uint16_t(random() % 8 == 0 ? (random() % 2) * (levels - 1) : random() % levels);
      const auto& codes = (flags & VRK_K_CODE3) != 0 ? c.codes : std::vector<unsigned>{};
      EXPECT_EQ(stage.line(src), (reference{table, flags}.dithered(src, c.planes, x, y, codes, c.adds)))
          << c.planes << " planes " << c.colour_bits << " bits, K " << c.k_bits << ", flags " << flags << ", " << width;
    }
  }
}

TEST(dither, every_mix_equals_the_definition) {
  const std::vector<unsigned> low{0, 1, 3}, high{0, 2, 3};
  const std::vector<kernel_case> cases{
      {6, 4, 4},           {6, 2, 2},           {6, 1, 1},           {6, 8, 8, {}, true}, {6, 2, 1, {}, true},
      {6, 4, 2, {}, true}, {4, 2, 2, low},      {4, 2, 1},           {4, 4, 1},           {4, 4, 2, high},
      {4, 1, 1, {}, true}, {4, 1, 2, {}, true}, {4, 4, 4, {}, true}, {4, 8, 2, {}, true}, {1, 0, 1},
      {1, 0, 2, low},      {1, 0, 4},           {1, 0, 8, {}, true}};
  for (const kernel_case& c : cases) {
    for (const std::uint32_t flags : {0u, VRK_IN16, VRK_K_CODE3, VRK_IN16 | VRK_K_CODE3}) {
      const unsigned top = (flags & VRK_IN16) != 0 ? 1023 : 255;
      dither_table table = make_table(c.planes, c.colour_bits, c.k_bits, top, 7 * c.planes + c.k_bits);
      auto& k = table.planes[3].level_values;
      if ((flags & VRK_K_CODE3) != 0 && c.k_bits >= 2) k = {0, std::uint16_t(top / 3), std::uint16_t(top)};
      expect_lines_of_definition(table, flags, c, 41);

      for (auto& plane : table.planes) {  // more levels than the bits can tell, ending elsewhere: an even spread
        if (!plane.level_values.empty()) plane.level_values = samples(plane.bits == 8 ? 255 : (1u << plane.bits) + 3);
      }
      expect_lines_of_definition(table, flags & VRK_IN16, c, 42);
    }
  }
}

// Levels out of order or beyond the input width, thresholds out of range, matrices too small to spread anything.
TEST(dither, odd_tables_equal_the_definition) {
  for (const std::uint32_t flags : {0u, VRK_IN16}) {
    const std::uint16_t top = flags != 0 ? 1023 : 255;
    for (const samples& levels : {samples{90, top}, samples{0, 200, 100, top}, samples{40, 0, top},
                                  samples{0, 65535, 30, top}, samples{top, top, top}, samples{0, 100, 200}}) {
      for (const auto& [width, height] : {std::pair{1u, 1u}, {2u, 2u}, {7u, 1u}, {255u, 2u}}) {
        dither_table table = k_only(width, height, levels, 4);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 5);
        for (auto& m : table.planes[3].matrix) m = std::uint16_t(65535 - 97 * m);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 6);
      }
    }
  }
}

TEST(dither, the_array_form_reads_only_covered_entries) {
  const dither_table table = k_only(4, 4, {0, 255}, 1);
  dither_stage stage(table, 0);
  std::uint8_t out = 0xA5;
  std::uint8_t* const line = &out;
  guarded_copy planes({reinterpret_cast<const std::uint8_t*>(&line), sizeof line});
  const samples src(8, 0xFFFF);
  vrk_start_dither_block(stage.handle(), 8, 0, 0);
  EXPECT_EQ(vrk_exec_ditherx(stage.handle(), src.data(), reinterpret_cast<std::uint8_t**>(planes.data())), 1u);
  EXPECT_EQ(out, 0xFF);
  vrk_end_dither_block(stage.handle());
  vrk_free_dither(stage.handle());
}

}  // namespace
