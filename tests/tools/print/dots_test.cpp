#include "tools/print/dots.h"

#include <gtest/gtest.h>

#include <random>

#include "kit/srgb.h"

namespace vrk::tool {
namespace {

struct shape {
  std::vector<unsigned> levels;  // of each plane
  std::vector<unsigned> bits;
  std::vector<dot_scale> scales;
};

// What the row is made of, dot by dot.
TEST(dots, are_those_of_packed_rows) {
  const shape shapes[] = {{{2, 2, 2, 2}, {1, 1, 1, 1}, {{1, 1}, {1, 1}, {1, 1}, {1, 1}}},
                          {{4, 3, 2, 2}, {2, 2, 1, 1}, {{1, 1}, {1, 1}, {1, 1}, {1, 1}}},
                          {{16}, {4}, {{1, 1}}},
                          {{256, 200}, {8, 8}, {{1, 1}, {1, 1}}},  // too many colours for one palette
                          {{2, 2, 2, 2}, {1, 1, 1, 1}, {{2, 1}, {1, 2}, {2, 2}, {1, 1}}}};
  std::mt19937 random;
  for (const shape& of : shapes) {
    for (const unsigned width : {1U, 7U, 8U, 23U, 66U}) {
      std::vector<plane_format> planes;
      std::size_t bytes = 0;
      for (std::size_t p = 0; p < of.levels.size(); ++p) {
        plane_format plane{plane_names[p], of.bits[p], {}, of.scales[p], (width * of.scales[p].x * of.bits[p] + 7) / 8,
                           bytes};
        for (unsigned code = 0; code < of.levels[p]; ++code) plane.ink.push_back(code / double(of.levels[p] - 1));
        bytes += plane.line_bytes * plane.scale.y;
        planes.push_back(plane);
      }
      const dot_colors look;
      dots row(planes, width, look);
      const unsigned places = width * row.scale().x, across = 5;
      std::vector<double> ink(planes.size());
      for (unsigned line = 0; line < 3; ++line) {
        std::vector<std::uint8_t> packed(bytes);  // with anything behind the last dot, and codes that have a level
        for (std::uint8_t& byte : packed) byte = std::uint8_t(random());
        const auto code_at = [&](std::size_t p, unsigned y, unsigned x) {
          const std::size_t bit = std::size_t{x} * planes[p].bits;
          std::uint8_t& byte = packed[planes[p].offset + y * planes[p].line_bytes + bit / 8];
          const unsigned shift = unsigned(8 - planes[p].bits - bit % 8), mask = (1U << planes[p].bits) - 1;
          const unsigned code = byte >> shift & mask, level = code % planes[p].levels();
          byte = std::uint8_t(byte ^ (code ^ level) << shift);
          return level;
        };
        for (unsigned y = 0; y < row.scale().y; ++y) {
          std::vector<light> wanted((places + across - 1) / across), sums(wanted.size());
          for (unsigned x = 0; x < places; ++x) {
            light color{1, 1, 1};
            for (std::size_t p = 0; p < planes.size(); ++p) {
              const dot_scale scale = planes[p].scale;
              const unsigned code = code_at(p, y * scale.y / row.scale().y, x * scale.x / row.scale().x);
              const double share = planes[p].ink[code];
              color = color * look.of({&share, 1}, p);
              ink[p] += share / places / row.scale().y / 3;
            }
            wanted[x / across] += color;
          }
          row.read_row(packed.data(), y);
          row.add_light(across, sums);
          for (std::size_t i = 0; i < sums.size(); ++i) {
            for (std::size_t c = 0; c < 3; ++c) ASSERT_NEAR(sums[i][c], wanted[i][c], 1e-5) << width << " " << i;
          }
        }
      }
      for (std::size_t p = 0; p < planes.size(); ++p) EXPECT_NEAR(row.coverage(p), ink[p], 1e-9) << width << " " << p;
    }
  }
}

TEST(srgb_bytes, are_those_of_all_levels) {
  for (unsigned level = 0; level < 65536; ++level) {
    const double light = level / 65535.0;
    ASSERT_EQ(kit::srgb_bytes::of_levels().of_light(light), kit::srgb_byte(kit::linear_to_srgb(light))) << level;
  }
}

}  // namespace
}  // namespace vrk::tool
