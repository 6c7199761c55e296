// The first converter's fixed rules.
#pragma once

#include "base/flags.h"
#include "csc/csc1_handle.h"
#include "csc/pixel.h"

namespace vrk {

// Luminance at a working precision; the weights add up to 1024 or 16384, so that white stays white.
template <int work>
constexpr u32 gray_value(u32 r, u32 g, u32 b) = delete;
template <>
constexpr u32 gray_value<8>(u32 r, u32 g, u32 b) {
  return (307 * r + 615 * g + 102 * b) >> 10;
}
template <>
constexpr u32 gray_value<12>(u32 r, u32 g, u32 b) {
  return (4915 * r + 9831 * g + 1638 * b) >> 14;
}

// White stays white, everything else becomes 0.
template <u32 full>
constexpr u32 black_value(u32 r, u32 g, u32 b) {
  return r == full && g == full && b == full ? full : 0;
}

// Four levels: 0, a quarter, a half, and full scale for full scale only.
template <u32 full>
constexpr u32 solid_value(u32 v) {
  constexpr u32 quarter = (full + 1) / 4;
  const u32 level = quarter * ((v >= quarter) + (v >= 2 * quarter));
  return v == full ? full : level;
}

// A sample as it is, but for what the working precision cuts off: to_output of to_working, in fewer steps.
template <csc_widths W>
constexpr sample_of<W.out> through_output(u32 sample) {
  const u32 v = rescale<W.in, W.out>(sample);
  if constexpr (W.out <= W.work) return sample_of<W.out>(v);
  const u32 kept = v & W.full() << std::max(W.out - W.work, 0);
  return sample_of<W.out>(kept | kept >> W.work);
}

// One sample a pixel, "gray" or "blck". Masked pixels become 0, `invert` or not.
template <csc_widths W, csc1_rule rule>
void csc1_mono_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  const rgb_reader<W> read(h.layout);
  const u32 flip = has(h.flags, VRK_INVERT) ? W.full() : 0;  // v ^ full is full - v
  for (u32 p = 0; p < pixel_count; ++p, src += read.bytes(), dst += sizeof(sample_of<W.out>)) {
    u32 v = 0;
    if (!is_masked(mask, p)) {
      const rgb_pixel<W> in = read(src);
      const u32 r = to_working<W>(in.r), g = to_working<W>(in.g), b = to_working<W>(in.b);
      v = flip ^ (rule == csc1_rule::gray ? gray_value<W.work>(r, g, b) : black_value<W.full()>(r, g, b));
    }
    store_sample(dst, to_output<W>(u16(v)));
  }
}

// Three samples a pixel, "thrh" or "sold". Masked pixels become 0.
template <csc_widths W, csc1_rule rule>
void csc1_rgb_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  const rgb_reader<W> read(h.layout);
  const rgb_writer<W.out> write(h.layout);
  const auto output = [](u32 sample) {
    if constexpr (rule == csc1_rule::through) return through_output<W>(sample);
    return to_output<W>(u16(solid_value<W.full()>(to_working<W>(sample))));
  };
  for (u32 p = 0; p < pixel_count; ++p, src += read.bytes(), dst += write.bytes()) {
    if (is_masked(mask, p)) {
      write(dst, {});
    } else {
      const rgb_pixel<W> in = read(src);
      write(dst, {{output(in.r), output(in.g), output(in.b)}});
    }
  }
}

}  // namespace vrk
