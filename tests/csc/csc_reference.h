// What both converters' tests stand on: random tables, handles in hostile memory, and what a grid shall give, pixel by
// pixel, straight from the definition.
#pragma once

#include <array>
#include <iterator>
#include <random>
#include <vector>

#include "kit/color_table.h"
#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

using rgb = std::array<unsigned, 3>;

// Flags that lead to the five combinations of widths.
constexpr std::uint32_t csc_flags[] = {0, VRK_PREC12, VRK_OUT16, VRK_IN16 | VRK_OUT16, VRK_IN16};

struct axis_span {
  unsigned first, last;  // 16-bit scale
  bool narrow = false;   // the last cell is one level wide at 12-bit precision, the thinnest there is
};
constexpr axis_span full_axis{0, 0xFFFF}, early_end{0, 0xF800}, inner_axis{0x2345, 0xD000}, steep_axis{0, 0x2100},
    steepest_axis{0, 0x2100, true};

// Random positions that differ at 8-bit precision, but for a narrow last cell.
inline kit::axis_positions random_axis(std::mt19937& random, unsigned points, axis_span span) {
  kit::axis_positions inner, axis{std::uint16_t(span.first)};
  for (unsigned level = (span.first >> 8) + 1; level < span.last >> 8; ++level) {
    inner.push_back(std::uint16_t(level << 8 | (random() & 0xFF)));
  }
  std::ranges::sample(inner, std::back_inserter(axis), points - 2, random);
  if (span.narrow && points > 2) axis.back() = std::uint16_t(span.last - 0x10);
  axis.push_back(std::uint16_t(span.last));
  return axis;
}

// Odd seeds: only 0 and full scale, where a carry from one sample into its neighbour shows best.
inline kit::color_table random_table(unsigned channels, unsigned points, unsigned seed, axis_span r = full_axis,
                                     axis_span g = full_axis, axis_span b = full_axis) {
  std::mt19937 random(seed);
  kit::color_table table;
  table.grid = {points, channels, std::vector<std::uint16_t>(points * points * points * channels)};
  for (auto& sample : table.grid.samples) sample = std::uint16_t(seed % 2 == 0 ? random() : random() % 2 * 0xFFFF);
  table.axes = {random_axis(random, points, r), random_axis(random, points, g), random_axis(random, points, b)};
  return table;
}

// All of the converter that makes so many channels.
inline std::vector<kit::grid_encoding> encodings(unsigned channels) {
  using enum kit::grid_encoding;
  return {raw16, packed12, packed10, raw8, channels == 3 ? delta8 : delta10};
}

// channels: 3 for the first converter, else the second.
inline std::uint32_t create_csc(const kit::bytes& image, unsigned channels, unsigned input_samples, std::uint32_t flags,
                                void* mem) {
  guarded_copy table(image);
  return channels == 3 ? vrk_create_csc1(table.size(), table.data(), flags, mem)
                       : vrk_create_csc2(table.size(), table.data(), input_samples, flags, mem);
}

// A handle of the converter that the table is for.
class converter {
 public:
  converter(const kit::bytes& image, std::uint32_t flags, unsigned input_samples = 3, std::size_t mem_offset = 4)
      : first_(image[0] == 'c' && image[3] == '1'),
        flags_(flags),
        handle_([&](void* mem) { return create_csc(image, first_ ? 3 : 4, input_samples, flags, mem); }, mem_offset) {
    EXPECT_EQ(handle_.used(), handle_.size());
  }

  std::uint32_t bytes() const { return handle_.used(); }
  std::uint32_t hint() { return (first_ ? vrk_query_csc1_hint : vrk_query_csc2_hint)(handle_.get()); }
  void set_layout(std::uint32_t layout) { (first_ ? vrk_set_csc1_rgb : vrk_set_csc2_rgb)(handle_.get(), layout); }

  // Raw call.
  std::uint32_t run(const void* src, const std::uint8_t* mask, std::uint32_t pixel_count, void* dst) {
    return first_ ? vrk_xform_csc1(handle_.get(), src, mask, pixel_count, dst)
                  : vrk_xform_csc2(handle_.get(), src, pixel_count, dst);
  }

  // A run between guards, with input and output at odd addresses; the output's memory is filled with 0xA5.
  samples run(const samples& in, unsigned pixel_count, unsigned out_pixel_samples, const std::uint8_t* mask = nullptr) {
    const bool out16 = flags_ & VRK_OUT16;
    kit::bytes src = packed(in, flags_ & VRK_IN16);
    if (flags_ & VRK_IN16) src.push_back(0);
    const auto transform = [&](void*, auto* from, auto* to) { return run(from, mask, pixel_count, to); };
    return unpacked(handle_.fenced_line(src, pixel_count * out_pixel_samples * (out16 ? 2 : 1), transform), out16);
  }

 private:
  bool first_;
  std::uint32_t flags_;
  handle handle_;
};

class csc_reference {
 public:
  csc_reference(const kit::color_table& table, std::uint32_t flags, bool gray = false)
      : n_(table.grid.points),
        channels_(table.grid.channels),
        in16_(flags & VRK_IN16),
        out16_(flags & VRK_OUT16),
        twelve_(flags != 0),
        gray_(gray) {
    for (unsigned a = 0; a < 3; ++a) {
      for (const unsigned position : table.axes[a]) axis_[a].push_back(position >> (twelve_ ? 4 : 8));
    }
    for (const unsigned sample : table.grid.samples) grid_.push_back(kept(sample, table.encoding));
  }

  // The samples that a pixel of these raw input samples becomes.
  samples operator()(const rgb& pixel) const {
    rgb level, cell;
    std::array<std::uint32_t, 3> product;
    std::array<std::uint16_t, 3> frac;
    const unsigned full = twelve_ ? 4095 : 255;
    for (unsigned a = 0; a < 3; ++a) {
      level[a] = working(pixel[a]);
      for (cell[a] = n_ - 2; cell[a] != 0 && axis_[a][cell[a]] > level[a];) --cell[a];
      const unsigned low = axis_[a][cell[a]], width = axis_[a][cell[a] + 1] - low;
      const auto reciprocal = std::uint32_t((twelve_ ? 4194304.0 : 65536.0) / width);
      product[a] = (level[a] < low ? 0 : level[a] - low) * reciprocal;
      frac[a] = std::uint16_t(product[a] >> (twelve_ ? 12 : 9));
      if (gray_) product[a] = frac[a];
    }
    const bool white = !gray_ && level == rgb{full, full, full};

    // From the lowest corner of the cell to the highest, along its edges in order of falling fraction.
    std::array<unsigned, 3> order{0, 1, 2};
    std::ranges::stable_sort(order, std::greater{}, [&](unsigned a) { return product[a]; });
    samples out;
    for (unsigned c = 0; c < channels_; ++c) {
      rgb corner = cell;
      const int lowest = at(corner, c);
      int from = lowest;
      std::int64_t sum = 0;
      for (const unsigned a : order) {
        ++corner[a];
        const int to = at(corner, c);
        sum += (to - from) * std::int64_t{frac[a]};
        from = to;
      }
      const auto value = std::uint16_t(lowest + (sum >> (twelve_ ? 10 : 7)));
      out.push_back(output(white ? grid_[grid_.size() - channels_ + c] : value));
    }
    return out;
  }

  unsigned working(unsigned sample) const { return in16_ ? sample >> 4 : twelve_ ? sample << 4 | sample >> 4 : sample; }
  std::uint16_t output(unsigned value) const {
    return std::uint16_t(out16_ ? value << 4 | value >> 8 : twelve_ ? value >> 4 & 0xFF : value & 0xFF);
  }

 private:
  unsigned kept(unsigned sample, kit::grid_encoding encoding) const {
    using enum kit::grid_encoding;
    if (!twelve_) return sample >> 8;
    if (encoding == raw16 || encoding == packed12) return sample >> 4;
    const bool ten = encoding == packed10 || encoding == delta10;
    return ten ? sample >> 6 << 2 | sample >> 14 : sample >> 8 << 4 | sample >> 12;
  }

  int at(const rgb& point, unsigned c) const {
    return int(grid_[((point[0] * n_ + point[1]) * n_ + point[2]) * channels_ + c]);
  }

  unsigned n_, channels_;
  bool in16_, out16_, twelve_, gray_;
  std::array<std::vector<unsigned>, 3> axis_;
  std::vector<unsigned> grid_;
};

// Pixels of every sort: single random ones, repeated ones, whites, near-whites and other ends of the scale.
inline std::vector<rgb> varied_pixels(unsigned count, bool in16, unsigned seed = 5) {
  std::mt19937 random(seed);
  const unsigned full = in16 ? 0xFFFF : 0xFF;
  std::vector<rgb> pixels;
  while (pixels.size() < count) {
    rgb pixel;
    const unsigned kind = unsigned(random() % 8);
    for (unsigned& sample : pixel) {
      const unsigned ends[] = {0, full, full - 1, full - 15, full - 16};
      sample = kind == 0 ? full : kind == 1 ? ends[random() % 5] : unsigned(random() & full);
    }
    pixels.push_back(kind == 2 && !pixels.empty() ? pixels.back() : pixel);
  }
  return pixels;
}

// Pixels as a layout has them; a fourth sample is anything.
struct layout_places {
  unsigned samples, rgb[3];
};
constexpr layout_places layouts[] = {{3, {0, 1, 2}}, {3, {2, 1, 0}}, {4, {2, 1, 0}}, {4, {1, 2, 3}}};

inline samples laid_out(const std::vector<rgb>& pixels, const layout_places& l, std::uint16_t fourth = 0x5A5A) {
  samples out(pixels.size() * l.samples, fourth);
  for (std::size_t p = 0; p < pixels.size(); ++p) {
    for (unsigned c = 0; c < 3; ++c) out[p * l.samples + l.rgb[c]] = std::uint16_t(pixels[p][c]);
  }
  return out;
}

}  // namespace vrk::test
