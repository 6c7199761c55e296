// What both halftones have in common: lines of packed planes, and what handles tell about them.
#pragma once

#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

// Halftones a line between guards, into lines as long as these, by one of its two functions. The array form is given no
// more pointers than it may look at; of six arguments those behind the last line are null.
inline lines fenced_lines(handle& h, const void* src, const lines& as_long, bool through_array,
                          decltype(&vrk_exec_dither) exec, decltype(&vrk_exec_ditherx) exec_array) {
  std::vector<fenced_block> blocks;
  for (const auto& line : as_long) blocks.emplace_back(line.size(), blocks.size());
  std::vector<std::uint8_t*> at(blocks.size());
  std::ranges::transform(blocks, at.begin(), [](fenced_block& block) { return block.data(); });
  guarded_copy covered({reinterpret_cast<const std::uint8_t*>(at.data()), at.size() * sizeof at[0]});
  at.resize(std::max(at.size(), std::size_t{6}));
  EXPECT_EQ(through_array ? exec_array(h.get(), src, reinterpret_cast<std::uint8_t**>(covered.data()))
                          : exec(h.get(), src, at[0], at[1], at[2], at[3], at[4], at[5]),
            1u);
  EXPECT_TRUE(h.fences_intact() && std::ranges::all_of(blocks, &fenced_block::fences_intact));
  lines written(blocks.size());
  std::ranges::transform(blocks, written.begin(), &fenced_block::bytes);
  return written;
}

inline void expect_info(const vrk_ht_info& told, const std::uint8_t* told_bits, const vrk_ht_info& expected) {
  EXPECT_EQ(told.method, expected.method);
  EXPECT_EQ(told.plane_count, expected.plane_count);
  for (std::size_t p = 0; p < 6; ++p) {
    EXPECT_EQ(told.plane_bits[p], expected.plane_bits[p]) << p;
    EXPECT_EQ(told_bits[p], expected.plane_bits[p]) << p;
    EXPECT_EQ(told.line_bytes[p], expected.line_bytes[p]) << p;
    EXPECT_EQ(told.plane_scale[p].scale_x, expected.plane_scale[p].scale_x) << p;
    EXPECT_EQ(told.plane_scale[p].scale_y, expected.plane_scale[p].scale_y) << p;
  }
  EXPECT_EQ(told.same_line_bytes, expected.same_line_bytes);
  EXPECT_EQ(told.dot_expansion, expected.dot_expansion);
  EXPECT_EQ(told.same_scale, expected.same_scale);
}

}  // namespace vrk::test
