// The first converter's fixed rules.
#pragma once

#include "csc/csc1.h"
#include "csc/pixel.h"

namespace vrk {

// Luminance; the weights add up to 1024 or 16384, so that white stays white.
template <int work>
constexpr u32 gray_value(u32 r, u32 g, u32 b) {
  if constexpr (work == 8) return (307 * r + 615 * g + 102 * b) >> 10;
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
  if (v == full) return full;
  return v < quarter ? 0 : v < 2 * quarter ? quarter : 2 * quarter;
}

// Masked pixels become 0 under every rule, `invert` or not.
template <csc_widths W, csc1_rule rule>
void csc1_rule_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  const rgb_reader<W> read(h.layout);
  const rgb_writer<W.out> write(h.layout);
  const u32 flip = h.flags & flag_invert ? W.full() : 0;  // v ^ full is full - v
  for (u32 p = 0; p < pixel_count; ++p) {
    const rgb_pixel<W> in = read(src);
    src += read.bytes();
    u32 r = to_working<W>(in.r), g = to_working<W>(in.g), b = to_working<W>(in.b);
    if constexpr (rule == csc1_rule::gray || rule == csc1_rule::black) {
      u32 v = flip ^ (rule == csc1_rule::gray ? gray_value<W.work>(r, g, b) : black_value<W.full()>(r, g, b));
      if (is_masked(mask, p)) v = 0;
      store_sample(dst, to_output<W>(u16(v)));
      dst += sizeof(sample_of<W.out>);
    } else {
      if constexpr (rule == csc1_rule::solid) {
        r = solid_value<W.full()>(r), g = solid_value<W.full()>(g), b = solid_value<W.full()>(b);
      }
      if (is_masked(mask, p)) r = g = b = 0;
      write.put(dst, to_output<W>(u16(r)), to_output<W>(u16(g)), to_output<W>(u16(b)));
      dst += write.bytes();
    }
  }
}

}  // namespace vrk
