#include "tests/halftone/dither_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::dither_table;
using job = dither_job;
using mix = dither_mix;

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
      if (of.planes != 6) table.planes[of.planes] = make_table({6, 4, 4}, top, 1).planes[5];  // in use, not produced
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
      for (const auto& [width, height] : {std::pair{1u, 1u}, {2u, 2u}, {7u, 1u}, {255u, 255u}}) {
        dither_table table = k_only(width, height, levels, 4);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 253);
        for (auto& m : table.planes[3].matrix) m = std::uint16_t(65535 - 97 * m);
        expect_lines_of_definition(table, flags, {1, 0, 4}, 254);
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
  const vrk_plane_scale one{1, 1};
  expect_info(info, bits,
              {2, 4, {1, 2, 2, 2, 4, 1}, {13, 26, 26, 26, 51, 13}, 0, 0, {one, one, one, one, one, {0, 0}}, 1});
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
