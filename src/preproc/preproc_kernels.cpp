#include "preproc/preproc_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/rgb_layout.h"
#include "base/rows.h"

namespace vrk {

namespace {

// Of every input level without any stage.
template <int out>
constexpr auto unchanged = [] {
  std::array<sample_of<out>, input_levels> outputs{};
  for (u32 i = 0; i < input_levels; ++i) outputs[i] = rescale<8, out>(i);
  return outputs;
}();

// Output samples of every input level.
struct channel_outputs {
  const u8 *r, *g, *b;
};

template <int out, rgb_layout L>
void look_up_run(channel_outputs outputs, const u8* src, u32 pixel_count, u8* dst) {
  using sample = sample_of<out>;
  const auto output = [](const u8* of_channel, u8 level) {
    return load_sample<sample>(of_channel + level * sizeof(sample));
  };
  for (u32 left = pixel_count; left != 0; --left, src += L.samples, dst += L.samples * sizeof(sample)) {
    const u8 r = src[L.r], g = src[L.g], b = src[L.b];
    store_sample(dst + L.r * sizeof(sample), output(outputs.r, r));
    store_sample(dst + L.g * sizeof(sample), output(outputs.g, g));
    store_sample(dst + L.b * sizeof(sample), output(outputs.b, b));
    if constexpr (L.samples == 4) store_sample(dst + (6 - L.r - L.g - L.b) * sizeof(sample), sample{0});  // the pad
  }
}

template <int out, u32 layout>
void preproc_line(const preproc_handle& handle, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  constexpr rgb_layout L = rgb_layouts[layout];
  const auto* const without_stage = reinterpret_cast<const u8*>(unchanged<out>.data());
  const u8* const first = handle.outputs ? handle.outputs.get() : without_stage;
  const channel_outputs outputs{first, first + handle.channel_bytes, first + 2 * handle.channel_bytes};
  if (mask == nullptr) return look_up_run<out, L>(outputs, src, pixel_count, dst);

  // In runs of pixels that are all blanked or all not, each within one byte of the mask.
  for (u32 at = 0, run; at != pixel_count; at += run) {
    const u8 bits = u8(mask[at / 8] << at % 8);
    const bool blank = bits >= 0x80;
    run = std::min({u32(blank ? std::countl_one(bits) : std::countl_zero(bits)), 8 - at % 8, pixel_count - at});
    const u32 dst_bytes = run * L.samples * u32(sizeof(sample_of<out>));
    if (blank) {
      std::memset(dst, 0, dst_bytes);
    } else {
      look_up_run<out, L>(outputs, src, run, dst);
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
