#include "preproc/preproc_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/curve_image.h"
#include "base/rgb_layout.h"
#include "base/rows.h"

namespace vrk {

void preproc_walk(const preproc_handle& handle, u32 channel, std::span<u16> values) {
  const bool wide = preproc_is_wide(handle.flags);
  bool is_10_bits = false;
  // by_10_bits: the table is entered by 10-bit values. shift: from its entries to the values it hands on.
  const auto apply = [&](const u16* table, bool by_10_bits, int shift) {
    const bool widen = by_10_bits && !is_10_bits;
    for (u16& v : values) v = u16(table[widen ? rescale<8, 10>(v) : v] >> shift);
    is_10_bits = wide;
  };

  const int curve_shift = wide ? 0 : 2;  // curves are always 10-bit tables
  if (handle.balance) apply(&handle.balance[input_levels * channel], false, 0);
  if (handle.lift) apply(&handle.lift[0], wide, 0);
  if (handle.contrast) apply(&handle.contrast[0], wide, 0);
  if (handle.rgb_curves) apply(&handle.rgb_curves[curve_image::entries * channel], true, curve_shift);
  if (handle.curve) apply(&handle.curve[0], true, curve_shift);
}

namespace {

// A run of fewer pixels is done sooner when the chain is walked for its own samples than for all input levels.
constexpr u32 shortest_long_run = 192;

// What a table of output samples is filled for.
struct all_levels {
  static constexpr u32 count = input_levels;
  u32 operator[](u32 i) const { return i; }
};
struct levels_of_run {
  const u8* samples;  // of one channel
  u32 step, count;    // bytes from pixel to pixel; pixels, fewer than shortest_long_run
  u32 operator[](u32 i) const { return samples[i * step]; }
};

// The output sample of every input level that a run has. A channel's output depends on that channel's input alone, so
// no pixel needs the chain for itself, even where the handle does not hold it combined.
template <int out>
struct output_levels {
  using sample = sample_of<out>;
  std::array<sample, input_levels> r, g, b;  // entries of levels that do not occur may not be set

  // Not inline: the kernels of all layouts share it.
  __attribute__((noinline))
  output_levels(const preproc_handle& handle, const rgb_layout& layout, const u8* src, u32 pixel_count) {
    const auto fill = [&](u32 channel, u32 place, sample* samples) {
      std::array<u16, input_levels> walked;
      const auto walk = [&](auto levels) {
        for (u32 i = 0; i < levels.count; ++i) walked[i] = u16(levels[i]);
        preproc_walk(handle, channel, {walked.data(), levels.count});
        set(samples, levels, walked.data(), handle.value_bits);
      };
      if (handle.combined) {
        set(samples, all_levels{}, &handle.combined[input_levels * channel], handle.value_bits);
      } else if (pixel_count < shortest_long_run) {
        walk(levels_of_run{src + place, layout.samples, pixel_count});
      } else {
        walk(all_levels{});
      }
    };
    fill(0, layout.r, r.data());
    fill(1, layout.g, g.data());
    fill(2, layout.b, b.data());
  }

 private:
  static void set(sample* samples, auto levels, const u16* values, u32 value_bits) {
    const bool is_10_bits = value_bits == 10;
    for (u32 i = 0; i < levels.count; ++i) {
      samples[levels[i]] = is_10_bits ? rescale<10, out>(values[i]) : rescale<8, out>(values[i]);
    }
  }
};

template <int out, rgb_layout L>
void look_up_run(const output_levels<out>& levels, const u8* src, u32 pixel_count, u8* dst) {
  using sample = sample_of<out>;
  for (u32 left = pixel_count; left != 0; --left, src += L.samples, dst += L.samples * sizeof(sample)) {
    const u8 r = src[L.r], g = src[L.g], b = src[L.b];
    store_sample(dst + L.r * sizeof(sample), levels.r[r]);
    store_sample(dst + L.g * sizeof(sample), levels.g[g]);
    store_sample(dst + L.b * sizeof(sample), levels.b[b]);
    if constexpr (L.samples == 4) store_sample(dst + (6 - L.r - L.g - L.b) * sizeof(sample), sample{0});  // the pad
  }
}

template <int out, u32 layout>
void preproc_line(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  constexpr rgb_layout L = rgb_layouts[layout];
  const output_levels<out> levels(handle, L, src, pixel_count);
  if (mask == nullptr) return look_up_run<out, L>(levels, src, pixel_count, dst);

  // In runs of pixels that are all blanked or all not, each within one byte of the mask.
  for (u32 at = 0, run; at != pixel_count; at += run) {
    const u8 bits = u8(mask[at / 8] << at % 8);
    const bool blank = bits >= 0x80;
    run = std::min({u32(blank ? std::countl_one(bits) : std::countl_zero(bits)), 8 - at % 8, pixel_count - at});
    const u32 dst_bytes = run * L.samples * u32(sizeof(sample_of<out>));
    if (blank) {
      std::memset(dst, 0, dst_bytes);
    } else {
      look_up_run<out, L>(levels, src, run, dst);
    }
    src += run * L.samples;
    dst += dst_bytes;
  }
}

constexpr std::array<preproc_row, 2 * layout_count> rows{{
    {8, 0, preproc_line<8, 0>},
    {8, 1, preproc_line<8, 1>},
    {8, 2, preproc_line<8, 2>},
    {8, 3, preproc_line<8, 3>},
    {16, 0, preproc_line<16, 0>},
    {16, 1, preproc_line<16, 1>},
    {16, 2, preproc_line<16, 2>},
    {16, 3, preproc_line<16, 3>},
}};

constexpr u32 row_for(int out, u32 layout) {
  return first_row(rows, [=](const preproc_row& row) { return row.out == out && row.layout == layout; });
}

static_assert([] {
  for (u32 layout = 0; layout < layout_count; ++layout) {
    if (row_for(output_bits(0), layout) == rows.size()) return false;
    if (row_for(output_bits(VRK_OUT16), layout) == rows.size()) return false;
  }
  return true;
}());

}  // namespace

std::span<const preproc_row> preproc_rows() { return rows; }

u32 preproc_transform(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  if (handle.layout >= layout_count) return 0;
  rows[row_for(output_bits(handle.flags), handle.layout)].kernel(handle, src, mask, pixel_count, dst);
  return 1;
}

}  // namespace vrk
