// The ordered dither by definition, pixel for pixel, and what its handles are made of.
#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <random>

#include "kit/dither_table.h"
#include "kit/planes.h"
#include "tests/halftone/halftone_lines.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

// A mix of bits, and what is peculiar to its kernel.
struct dither_mix {
  unsigned planes, colour_bits, k_bits;
  std::vector<unsigned> codes{};  // what is written for the levels of a three-level K under k_code3
  bool adds = false;              // levels meet in a byte by addition
};

// Matrices that are no permutation, no power of two and not all of one size.
inline kit::dither_table make_table(const dither_mix& of, unsigned top, unsigned seed) {
  std::mt19937 random(seed);
  kit::dither_table table;
  for (unsigned p = 0; p < of.planes; ++p) {
    kit::dither_plane& plane = table.planes[kit::table_position[p]];
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

inline kit::dither_table k_only(unsigned width, unsigned height, samples level_values, unsigned bits) {
  kit::dither_table table;
  table.planes[3] = {width, height, {}, bits, std::move(level_values), samples(width * height)};
  std::iota(table.planes[3].matrix.begin(), table.planes[3].matrix.end(), std::uint16_t{0});
  return table;
}

// By definition, pixel for pixel: no look-up table, no threshold kept.
struct dither_reference {
  const kit::dither_table& table;
  std::uint32_t flags;
  const dither_mix& of;
  bool in16 = (flags & VRK_IN16) != 0;
  unsigned top = in16 ? 1023 : 255;

  unsigned level(const kit::dither_plane& plane, unsigned v, unsigned x, unsigned y) const {
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
      const kit::dither_plane& plane = table.planes[kit::table_position[p]];
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
struct dither_job {
  kit::bytes table;
  std::uint32_t flags = 0, line_width = 2000;

  std::uint32_t operator()(void* mem) const {
    guarded_copy image(table);
    return vrk_create_dither(line_width, image.size(), image.data(), flags, mem);
  }
};

inline void expect_lines_of_definition(
    const kit::dither_table& table, std::uint32_t flags, const dither_mix& of, unsigned seed,
    const std::function<void(void* handle)>& prepare = [](void*) {}) {
  std::mt19937 random(seed);
  handle h(dither_job{table.encode(), flags});
  prepare(h.get());
  const dither_reference reference{table, flags, of};
  const unsigned levels = reference.in16 ? 65536 : 256;
  for (const auto& [width, x] :
       {std::pair{0u, 0u}, {1u, 0u}, {7u, 5u}, {8u, 4u}, {9u, 1999u - 8}, {333u, 17u}, {1100u, 6u}}) {
    ASSERT_EQ(vrk_start_dither_block(h.get(), width, x, seed), 1u);
    for (unsigned y = seed; y < seed + 3; ++y) {
      samples src(width * of.planes);
      for (auto& v : src) v = std::uint16_t(random() % 8 == 0 ? (random() % 2) * (levels - 1) : random() % levels);
      const lines expected = reference.line(src, x, y);
      kit::bytes at_the_end = packed(src, reference.in16);
      at_the_end.resize(at_the_end.size() + y % 2);  // the samples' addresses are odd on odd lines
      guarded_copy readable(at_the_end);
      EXPECT_EQ(fenced_lines(h, readable.data(), expected, y % 2 != 0, vrk_exec_dither, vrk_exec_ditherx), expected)
          << of.planes << " planes, " << of.colour_bits << " bits, K " << of.k_bits << ", flags " << flags;
    }
  }
}

}  // namespace vrk::test
