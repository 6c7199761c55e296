// Pixels on their way through a kernel: read as R, G, B, written as up to six samples.
#pragma once

#include <type_traits>

#include "base/rgb_layout.h"
#include "csc/widths.h"

namespace vrk {

// An input pixel as it was read. `key` tells pixels apart in one comparison; no pixel has the key `no_pixel`.
template <csc_widths W>
struct rgb_pixel {
  using key_type = std::conditional_t<(3 * W.in < 32), u32, u64>;
  static constexpr key_type no_pixel = ~key_type{0};

  u32 r, g, b;

  key_type key() const { return r | key_type(g) << W.in | key_type(b) << 2 * W.in; }

  // Full scale at working precision in all three, whatever low bits are lost on the way there.
  bool is_white() const { return (r & g & b) >= (1u << W.in) - (1u << std::max(W.in - W.work, 0)); }
};

// Where the samples of a layout's pixels lie, in bytes. In all layouts G stands in the middle between R and B. A layout
// word above 3 counts as 0.
template <int bits>
struct sample_places {
  u32 r;                // from the pixel's start
  std::ptrdiff_t step;  // from R to G, and from G to B
  u32 pixel;            // from one pixel to the next

  explicit sample_places(u32 layout) {
    const rgb_layout& l = rgb_layouts[layout < layout_count ? layout : 0];
    constexpr u32 s = sizeof(sample_of<bits>);
    r = l.r * s, step = (std::ptrdiff_t(l.g) - l.r) * s, pixel = l.samples * s;
  }
};

// Three samples a pixel, placed by the layout.
template <csc_widths W>
class rgb_reader {
 public:
  static constexpr bool gray = false;

  explicit rgb_reader(u32 layout) : at_(layout) {}

  u32 bytes() const { return at_.pixel; }
  rgb_pixel<W> operator()(const u8* src) const {
    using sample = sample_of<W.in>;
    const u8* const r = src + at_.r;
    return {load_sample<sample>(r), load_sample<sample>(r + at_.step), load_sample<sample>(r + 2 * at_.step)};
  }

 private:
  sample_places<W.in> at_;
};

// One sample a pixel, which stands for all three.
template <csc_widths W>
class gray_reader {
 public:
  static constexpr bool gray = true;

  explicit gray_reader(u32) {}

  static constexpr u32 bytes() { return sizeof(sample_of<W.in>); }
  rgb_pixel<W> operator()(const u8* src) const {
    const u32 v = load_sample<sample_of<W.in>>(src);
    return {v, v, v};
  }
};

// An output pixel, with room for a vector of samples. What stands behind the pixel's own means nothing.
template <int bits>
struct alignas(16) out_pixel {
  sample_of<bits> sample[16 / sizeof(sample_of<bits>)];
};

// Places the first three samples as the layout tells; a fourth one of the pixel is left as it is.
template <int bits>
class rgb_writer {
 public:
  explicit rgb_writer(u32 layout) : at_(layout) {}

  u32 bytes() const { return at_.pixel; }
  void operator()(u8* dst, const out_pixel<bits>& out) const {
    u8* const r = dst + at_.r;
    store_sample(r, out.sample[0]);
    store_sample(r + at_.step, out.sample[1]);
    store_sample(r + 2 * at_.step, out.sample[2]);
  }

 private:
  sample_places<bits> at_;
};

// All samples, back to back.
template <int bits, u32 count>
class plane_writer {
 public:
  explicit plane_writer(u32) {}

  static constexpr u32 bytes() { return count * sizeof(sample_of<bits>); }
  void operator()(u8* dst, const out_pixel<bits>& out) const { std::memcpy(dst, out.sample, bytes()); }
};

// Which pixels of a run are left out.
struct no_mask {
  static constexpr bool covers(u32) { return false; }
};
struct bit_mask {
  const u8* bits;
  bool covers(u32 pixel) const { return is_masked(bits, pixel); }
};

}  // namespace vrk
