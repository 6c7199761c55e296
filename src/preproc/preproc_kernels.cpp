#include "preproc/preproc_kernels.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "base/curve_image.h"
#include "base/flags.h"
#include "base/pixel_layout.h"

namespace vrk {

void preproc_combine(const preproc_handle& handle, u32 channel, std::span<u16, input_levels> values) {
  const bool wide = preproc_is_wide(handle.flags);
  bool is_10_bits = false;
  // by_10_bits: the table is entered by 10-bit values. shift: from its entries to the values it hands on.
  const auto apply = [&](const u16* table, bool by_10_bits, int shift) {
    const bool widen = by_10_bits && !is_10_bits;
    for (u16& v : values) v = u16(table[widen ? widen_8_to_10(v) : v] >> shift);
    is_10_bits = wide;
  };

  std::iota(values.begin(), values.end(), u16{0});
  const int curve_shift = wide ? 0 : 2;  // curves are always 10-bit tables
  if (handle.balance) apply(&handle.balance[input_levels * channel], false, 0);
  if (handle.lift) apply(&handle.lift[0], wide, 0);
  if (handle.contrast) apply(&handle.contrast[0], wide, 0);
  if (handle.rgb_curves) apply(&handle.rgb_curves[curve_image::entries * channel], true, curve_shift);
  if (handle.curve) apply(&handle.curve[0], true, curve_shift);
}

namespace {

template <class Sample>
constexpr Sample to_sample(u32 value, bool is_10_bits) {
  if constexpr (sizeof(Sample) == 1) return Sample(is_10_bits ? value >> 2 : value);
  return Sample(is_10_bits ? widen_10_to_16(value) : widen_8_to_16(value));
}

// The output sample of every input level. A channel's output depends on that channel's input alone, so the chain is
// walked for 256 levels a call and not for every pixel, even where the handle does not hold it combined.
template <class Sample>
struct output_levels {
  Sample r[input_levels], g[input_levels], b[input_levels];

  explicit output_levels(const preproc_handle& handle) {
    fill(handle, 0, r);
    fill(handle, 1, g);
    fill(handle, 2, b);
  }

 private:
  static void fill(const preproc_handle& handle, u32 channel, Sample (&samples)[input_levels]) {
    std::array<u16, input_levels> walked;
    const u16* values = walked.data();
    if (handle.combined) {
      values = &handle.combined[input_levels * channel];
    } else {
      preproc_combine(handle, channel, walked);
    }
    const bool is_10_bits = handle.value_bits == 10;
    for (u32 level = 0; level < input_levels; ++level) samples[level] = to_sample<Sample>(values[level], is_10_bits);
  }
};

template <class Sample, pixel_layout L>
void look_up_run(const output_levels<Sample>& levels, const u8* src, u32 pixel_count, u8* dst) {
  for (u32 left = pixel_count; left != 0; --left, src += L.samples, dst += L.samples * sizeof(Sample)) {
    store_sample(dst + L.r * sizeof(Sample), levels.r[src[L.r]]);
    store_sample(dst + L.g * sizeof(Sample), levels.g[src[L.g]]);
    store_sample(dst + L.b * sizeof(Sample), levels.b[src[L.b]]);
    if constexpr (L.samples == 4) store_sample(dst + (6 - L.r - L.g - L.b) * sizeof(Sample), Sample{0});  // the pad
  }
}

template <class Sample, pixel_layout L>
void transform_line(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  const output_levels<Sample> levels(handle);
  if (mask == nullptr) return look_up_run<Sample, L>(levels, src, pixel_count, dst);

  // In runs of pixels that are all blanked or all not, each within one byte of the mask.
  for (u32 at = 0, run; at != pixel_count; at += run) {
    const u8 bits = u8(mask[at / 8] << at % 8);
    const bool blank = bits >= 0x80;
    run = std::min({u32(blank ? std::countl_one(bits) : std::countl_zero(bits)), 8 - at % 8, pixel_count - at});
    if (blank) {
      std::memset(dst, 0, run * L.samples * sizeof(Sample));
    } else {
      look_up_run<Sample, L>(levels, src, run, dst);
    }
    src += run * L.samples;
    dst += run * L.samples * sizeof(Sample);
  }
}

using line_kernel = void (*)(const preproc_handle&, const u8*, const u8*, u32, u8*);

template <class Sample>
constexpr line_kernel line_kernels[layout_count] = {
    transform_line<Sample, pixel_layouts[0]>,
    transform_line<Sample, pixel_layouts[1]>,
    transform_line<Sample, pixel_layouts[2]>,
    transform_line<Sample, pixel_layouts[3]>,
};

}  // namespace

u32 preproc_transform(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  if (handle.layout >= layout_count) return 0;
  const bool out16 = has(handle.flags, VRK_OUT16);
  const line_kernel kernel = out16 ? line_kernels<u16>[handle.layout] : line_kernels<u8>[handle.layout];
  if (pixel_count != 0) kernel(handle, src, mask, pixel_count, dst);
  return 1;
}

}  // namespace vrk
