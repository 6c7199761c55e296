// Error diffusion jobs for the tests: tables at random, and the library driven line by line between guard bytes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/ed_reference.h"
#include "tests/guard.h"

namespace vrk::test {

struct ed_tables {
  kit::edpr_table params;
  kit::edtb_table spread;
};

// What a table may hold. Wild: level values, thresholds, amounts and numbers of rows that lead outside every table.
struct ed_traits {
  std::size_t planes = 4;  // 1, 4 or 6
  bool wild = false, extended = false, same_scale = false;
};

inline ed_tables random_ed_tables(const ed_traits& traits, std::mt19937& random) {
  const auto below = [&](unsigned n) { return unsigned(random() % n); };
  ed_tables tables;
  kit::edpr_table& t = tables.params;
  t.version = traits.extended ? "0020" : "0010";
  t.matrix_width = 1 + below(5), t.matrix_height = 1 + below(5);
  t.matrix_column_shift = below(7), t.matrix_row_shift = below(7);
  t.pattern_width = 1 + below(4), t.pattern_height = 1 + below(4);
  t.pattern_column_shift = below(7), t.pattern_row_shift = below(7);
  for (std::size_t p = 0; p < traits.planes; ++p) {
    kit::ed_plane& plane = t.planes[kit::table_position[p]];
    plane.bits = std::vector{1u, 2u, 4u, 3u}[below(4)];
    const unsigned levels = 1 + below(plane.bits == 3 ? 255 : 1u << plane.bits);
    for (unsigned i = 0; i < levels; ++i)
      plane.level_values.push_back(std::uint16_t(below(traits.wild ? 65536 : 1024)));
    for (unsigned i = 1; i < levels; ++i) plane.thresholds.push_back(std::uint16_t(below(traits.wild ? 65536 : 1024)));
    if (!traits.wild) {
      std::sort(plane.level_values.begin(), plane.level_values.end());
      std::sort(plane.thresholds.begin(), plane.thresholds.end());
    }
    for (unsigned i = 0; i < t.matrix_width * t.matrix_height; ++i) plane.modulation.push_back(std::int8_t(below(256)));
    if (!traits.extended) continue;
    const kit::ed_plane& like = traits.same_scale && p > 0 ? t.planes[kit::table_position[0]] : plane;
    plane.scale_x = &like != &plane ? like.scale_x : 1u << below(3);
    plane.scale_y = &like != &plane ? like.scale_y : 1 + below(4);
    for (unsigned i = 0; i < levels; ++i) {
      auto& cells = plane.patterns.emplace_back(t.pattern_width * t.pattern_height);
      for (auto& cell : cells) cell = std::uint16_t(below(65536));
    }
  }
  const unsigned rows = traits.wild ? 1 + below(1400) : 511;
  for (unsigned row = 0; row < rows; ++row) {
    kit::edtb_row& amounts = tables.spread.rows.emplace_back();
    for (auto& amount : amounts) amount = std::int16_t(below(65536));
    if (traits.wild) continue;
    int rest = int(row) - 255;
    for (std::size_t i = 0; i < 4; ++i) rest -= amounts[i] = std::int16_t(rest * int(below(100)) / 100);
    amounts[4] = std::int16_t(rest);
  }
  return tables;
}

inline std::vector<std::uint16_t> random_samples(std::size_t count, unsigned flags, std::mt19937& random) {
  std::vector<std::uint16_t> samples(count);
  for (auto& s : samples)
    s = random() % 3 == 0 ? std::uint16_t{0} : std::uint16_t(random() % (flags & VRK_IN16 ? 65536 : 256));
  return samples;
}

// A handle of the library. Its memory, and every line it writes, is fenced and lies `offset` past a 32-byte boundary.
class ed_library {
 public:
  ed_library(const ed_tables& tables, unsigned width, unsigned flags, std::size_t offset = 0)
      : offset_(offset), flags_(flags), mem_(create(tables, width, flags, nullptr), offset, std::uint8_t(offset)) {
    used_ = create(tables, width, flags, mem_.data());
    EXPECT_TRUE(used_ != 0 && used_ <= mem_.contents().size());
    EXPECT_TRUE(mem_.fences_intact());
    vrk_query_ed_info(handle(), &info_);
  }

  static std::uint32_t create(const ed_tables& tables, unsigned width, unsigned flags, void* mem) {
    const kit::bytes spread = tables.spread.encode(), params = tables.params.encode();
    return vrk_create_ed(width, std::uint32_t(spread.size()), spread.data(), std::uint32_t(params.size()),
                         params.data(), flags, mem);
  }

  void* handle() { return mem_.data(); }
  const vrk_ht_info& info() const { return info_; }
  std::span<const std::uint8_t> bytes() const { return mem_.contents().first(used_); }
  bool start(unsigned block_width, unsigned x, unsigned line) {
    const bool started = vrk_start_ed_block(handle(), block_width, x, line) == 1;
    if (started) block_width_ = block_width;
    return started;
  }
  void end() { vrk_end_ed_block(handle()); }
  void clear() { vrk_clear_ed_buf(handle()); }

  // Through vrk_exec_edx, or through the six arguments of vrk_exec_ed; lines that are not produced are null there.
  packed_lines line(const std::vector<std::uint16_t>& samples, bool through_array) {
    kit::bytes src(offset_ % 2);  // 16-bit samples at odd addresses too
    for (const std::uint16_t s : samples) {
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&s);
      src.insert(src.end(), bytes, bytes + (flags_ & VRK_IN16 ? 2 : 1));
    }
    guarded_copy page(src);
    std::vector<fenced_block> blocks;
    for (std::size_t p = 0; p < info_.plane_count; ++p) {
      const std::uint32_t bits = info_.plane_bits[p] * info_.plane_scale[p].scale_x;
      for (unsigned y = 0; y < info_.plane_scale[p].scale_y; ++y) {
        blocks.emplace_back((std::size_t(bits) * block_width_ + 7) / 8, (offset_ + p) % 8);
      }
    }
    std::vector<std::uint8_t*> out(std::max(blocks.size(), std::size_t{6}));
    for (std::size_t i = 0; i < blocks.size(); ++i) out[i] = blocks[i].data();
    const void* const first = page.data() + offset_ % 2;
    EXPECT_EQ(through_array ? vrk_exec_edx(handle(), first, out.data())
                            : vrk_exec_ed(handle(), first, out[0], out[1], out[2], out[3], out[4], out[5]),
              1u);
    packed_lines lines;
    for (const fenced_block& block : blocks) {
      EXPECT_TRUE(block.fences_intact());
      lines.emplace_back(block.contents().begin(), block.contents().end());
    }
    EXPECT_TRUE(mem_.fences_intact());
    return lines;
  }

 private:
  std::size_t offset_;
  unsigned flags_, block_width_ = 0;
  std::size_t used_ = 0;
  fenced_block mem_;
  vrk_ht_info info_{};
};

}  // namespace vrk::test
