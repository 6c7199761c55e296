// What both converters' tests stand on: random tables, handles in hostile memory, and what a grid shall give, pixel by
// pixel, straight from the definition.
#pragma once

#include <array>
#include <functional>
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
    steepest_axis{0, 0x2100, true}, early_half{0, 0x6000};  // of two points: fractions up to 2730 at 12 bits

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

  void* get() { return handle_.get(); }
  std::uint32_t bytes() const { return handle_.used(); }
  std::uint32_t hint() { return (first_ ? vrk_query_csc1_hint : vrk_query_csc2_hint)(handle_.get()); }
  void set_layout(std::uint32_t layout) { (first_ ? vrk_set_csc1_rgb : vrk_set_csc2_rgb)(handle_.get(), layout); }

  // Raw call.
  std::uint32_t run(const void* src, const std::uint8_t* mask, std::uint32_t pixel_count, void* dst) {
    return first_ ? vrk_xform_csc1(handle_.get(), src, mask, pixel_count, dst)
                  : vrk_xform_csc2(handle_.get(), src, pixel_count, dst);
  }

  // A run by handle::line.
  samples run(const samples& in, unsigned pixel_count, unsigned out_pixel_samples, const std::uint8_t* mask = nullptr) {
    const bool out16 = flags_ & VRK_OUT16;
    const auto transform = [&](void*, auto* from, auto* to) { return run(from, mask, pixel_count, to); };
    const std::size_t out_bytes = pixel_count * out_pixel_samples * (out16 ? 2 : 1);
    return unpacked(handle_.line(packed(in, flags_ & VRK_IN16), out_bytes, transform), out16);
  }

 private:
  bool first_;
  std::uint32_t flags_;
  handle handle_;
};

// What a pixel becomes: up to six samples.
using out_samples = std::array<std::uint16_t, 6>;

// Samples on their way into the working precision and out of it.
struct widths_reference {
  bool in16, out16, twelve;

  explicit widths_reference(std::uint32_t flags) : in16(flags & VRK_IN16), out16(flags & VRK_OUT16) {
    twelve = in16 || out16 || (flags & VRK_PREC12);
  }

  unsigned full() const { return twelve ? 4095 : 255; }
  unsigned working(unsigned sample) const { return in16 ? sample >> 4 : twelve ? sample << 4 | sample >> 4 : sample; }
  rgb working(const rgb& pixel) const { return {working(pixel[0]), working(pixel[1]), working(pixel[2])}; }
  std::uint16_t output(unsigned value) const {
    return std::uint16_t(out16 ? value << 4 | value >> 8 : twelve ? value >> 4 & 0xFF : value & 0xFF);
  }
};

class grid_reference {
 public:
  grid_reference(const kit::color_table& table, std::uint32_t flags, bool gray)
      : n_(table.grid.points),
        channels_(table.grid.channels),
        encoding_(table.encoding),
        grid_(table.grid.samples),
        widths_(flags),
        gray_(gray) {
    for (unsigned a = 0; a < 3; ++a) {
      for (const unsigned position : table.axes[a]) axis_[a].push_back(position >> (widths_.twelve ? 4 : 8));
    }
  }

  out_samples operator()(const rgb& pixel) const {
    const rgb level = widths_.working(pixel);
    rgb cell;
    std::array<std::uint32_t, 3> product;
    std::array<std::uint16_t, 3> frac;
    for (unsigned a = 0; a < 3; ++a) {
      for (cell[a] = n_ - 2; cell[a] != 0 && axis_[a][cell[a]] > level[a];) --cell[a];
      const unsigned low = axis_[a][cell[a]], width = axis_[a][cell[a] + 1] - low;
      const auto reciprocal = std::uint32_t((widths_.twelve ? 4194304.0 : 65536.0) / width);
      product[a] = (level[a] < low ? 0 : level[a] - low) * reciprocal;
      frac[a] = std::uint16_t(product[a] >> (widths_.twelve ? 12 : 9));
      if (gray_) product[a] = frac[a];
    }
    const unsigned full = widths_.full();
    const bool white = !gray_ && level == rgb{full, full, full};

    // From the lowest corner of the cell to the highest, along its edges in order of falling fraction.
    std::array<unsigned, 3> order{0, 1, 2};
    std::ranges::stable_sort(order, std::greater{}, [&](unsigned a) { return product[a]; });
    out_samples out{};
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
      const auto value = std::uint16_t(lowest + (sum >> (widths_.twelve ? 10 : 7)));
      out[c] = widths_.output(white ? at({n_ - 1, n_ - 1, n_ - 1}, c) : value);
    }
    return out;
  }

 private:
  int at(const rgb& point, unsigned c) const {
    using enum kit::grid_encoding;
    const int sample = grid_[((point[0] * n_ + point[1]) * n_ + point[2]) * channels_ + c];
    if (!widths_.twelve) return sample >> 8;
    if (encoding_ == raw16 || encoding_ == packed12) return sample >> 4;
    const bool ten = encoding_ == packed10 || encoding_ == delta10;
    return ten ? sample >> 6 << 2 | sample >> 14 : sample >> 8 << 4 | sample >> 12;
  }

  unsigned n_, channels_;
  kit::grid_encoding encoding_;
  samples grid_;
  widths_reference widths_;
  bool gray_;
  std::array<std::vector<unsigned>, 3> axis_;
};

// One conversion: a table, how it is used, and what it makes of a pixel's raw samples.
struct conversion {
  kit::bytes image;
  std::uint32_t flags;
  unsigned input_samples, output_samples;  // the pad sample of a layout apart
  std::function<out_samples(const rgb& pixel)> reference;
};

inline conversion by_grid(const kit::color_table& table, std::uint32_t flags, bool gray = false) {
  return {table.encode(), flags, gray ? 1u : 3u, table.grid.channels, grid_reference(table, flags, gray)};
}

// What the subtypes make of a pixel at working precision.
inline rgb through(rgb v, unsigned) { return v; }
inline rgb solid(rgb v, unsigned full) {
  const unsigned half = (full + 1) / 2;
  for (unsigned& s : v) s = s == full ? full : s >= half ? half : s >= half / 2 ? half / 2 : 0;
  return v;
}
inline rgb gray(rgb v, unsigned full) {
  if (full == 4095) return {(4915 * v[0] + 9831 * v[1] + 1638 * v[2]) / 16384};
  return {(307 * v[0] + 615 * v[1] + 102 * v[2]) / 1024};
}
inline rgb black(rgb v, unsigned full) { return {v == rgb{full, full, full} ? full : 0}; }

inline constexpr struct fixed_rule {
  const char* subtype;
  unsigned output_samples;
  rgb (*value)(rgb level, unsigned full);
} fixed_rules[] = {{"thrh", 3, through}, {"gray", 1, gray}, {"blck", 1, black}, {"sold", 3, solid}};

inline conversion by_rule(const fixed_rule& rule, std::uint32_t flags) {
  return {kit::subtype_table(rule.subtype), flags, 3, rule.output_samples, [=](const rgb& pixel) {
            const widths_reference widths(flags);
            rgb value = rule.value(widths.working(pixel), widths.full());
            if ((flags & VRK_INVERT) && rule.output_samples == 1) value[0] = widths.full() - value[0];
            return out_samples{widths.output(value[0]), widths.output(value[1]), widths.output(value[2])};
          }};
}

// Straight lines between neighbouring entries, for 16-bit input.
inline conversion by_curve(std::uint32_t flags) {
  const kit::curve_image image = random_curves(1, flags);
  return {image.encode(), flags, 1, 1, [c = image.curves[0], flags](const rgb& pixel) {
            const unsigned level = pixel[0];
            unsigned value;
            if (flags & VRK_IN16) {
              unsigned n = level / 64;  // the entry at or below the level
              const auto at = [](unsigned entry) { return entry * 64 + entry / 16; };
              if (at(n) > level) --n;
              const double slope = n == 1023 ? 0 : (double(c[n + 1]) - c[n]) / (at(n + 1) - at(n));
              value = unsigned((level - at(n)) * slope + c[n] + (level == at(n) ? 0 : 0.5));
            } else {
              value = c[level << 2 | level >> 6];
            }
            return out_samples{std::uint16_t(flags & VRK_OUT16 ? value : value >> 8)};
          }};
}

// Pixels of every sort: single random ones, repeated ones, the one before a white or another one again, whites,
// near-whites and other ends of the scale.
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
    const bool again = (kind == 2 || kind == 3) && pixels.size() >= kind - 1;
    pixels.push_back(again ? pixels[pixels.size() - (kind - 1)] : pixel);
  }
  return pixels;
}

// Pixels as a layout has them; the pad sample is anything.
struct layout_places {
  unsigned samples, rgb[3];
};
constexpr layout_places layouts[] = {{3, {0, 1, 2}}, {3, {2, 1, 0}}, {4, {2, 1, 0}}, {4, {1, 2, 3}}};

inline samples laid_out(const std::vector<rgb>& pixels, const layout_places& l) {
  samples out(pixels.size() * l.samples, 0x5A5A);
  for (std::size_t p = 0; p < pixels.size(); ++p) {
    for (unsigned c = 0; c < 3; ++c) out[p * l.samples + l.rgb[c]] = std::uint16_t(pixels[p][c]);
  }
  return out;
}

// All pixels in one run, and the first ones in runs of 100 and 1, since long and short runs take different kernels.
// Layouts that do not exist are layout 0. masked: nearly half of the pixels, in whole bytes of the mask and in single
// bits. prepare: what else to do to the handle.
inline void expect_as_reference(
    const conversion& c, std::vector<rgb> pixels, std::uint32_t layout, bool masked = false,
    const std::function<void(void* handle)>& prepare = [](void*) {}) {
  std::mt19937 random(3);
  kit::bytes mask(masked ? (pixels.size() + 7) / 8 : 0);
  for (std::uint8_t& bits : mask) bits = std::uint8_t(random() % 4 == 0 ? 0xFF : random() & random());
  guarded_copy mask_bits(mask);
  const layout_places in = c.input_samples == 1 ? layout_places{1, {0, 0, 0}} : layouts[layout > 3 ? 0 : layout];
  const layout_places out = c.output_samples == 3 ? in : layout_places{c.output_samples, {0, 1, 2}};
  samples expected(pixels.size() * out.samples, c.flags & VRK_OUT16 ? 0xA5A5 : 0xA5);
  for (std::size_t p = 0; p < pixels.size(); ++p) {
    if (c.input_samples == 1) pixels[p].fill(pixels[p][2]);
    const bool blank = masked && (mask[p / 8] >> (7 - p % 8) & 1);
    const out_samples value = blank ? out_samples{} : c.reference(pixels[p]);
    for (unsigned i = 0; i < c.output_samples; ++i) expected[p * out.samples + (i < 3 ? out.rgb[i] : i)] = value[i];
  }
  converter csc(c.image, c.flags, c.input_samples, layout % 8 * 4);
  prepare(csc.get());
  csc.set_layout(3);
  csc.set_layout(layout);
  const samples src = laid_out(pixels, in);
  for (const std::size_t run : {pixels.size(), std::size_t{100}, std::size_t{1}}) {
    const auto part = [run](const samples& all, unsigned length) {
      return samples(all.begin(), all.begin() + std::ptrdiff_t(run * length));
    };
    const std::uint8_t* const bits = masked ? mask_bits.data() : nullptr;
    EXPECT_EQ(csc.run(part(src, in.samples), unsigned(run), out.samples, bits), part(expected, out.samples)) << run;
  }
}

}  // namespace vrk::test
