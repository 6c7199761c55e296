#include "halftone/dither/dither_kernels.h"

#include <algorithm>

#include "base/flags.h"
#include "base/look_up_index.h"
#include "base/rows.h"
#include "halftone/dither/stretch_kernels.h"

namespace vrk {
namespace {

// The mixes of bits that have a kernel of their own: it ORs, and under k_code3 it writes a K plane of three levels in
// a code. All other mixes take the general kernel, which adds and knows no code.
struct dither_mix {
  u8 planes;
  u8 colour_bits;  // of C, M, Y, fifth, sixth
  u8 k_bits;
  k_code three_levels = k_code::level;
};

constexpr std::array<dither_mix, 10> dither_mixes{{
    {6, 4, 4},
    {6, 2, 2},
    {6, 1, 1},
    {4, 2, 2, k_code::low_first},
    {4, 2, 1},
    {4, 4, 1},
    {4, 4, 2, k_code::high_first},
    {1, 0, 1},
    {1, 0, 2, k_code::low_first},
    {1, 0, 4},
}};

template <int in>
u32 load_threshold(const u8* row, u32 column) {
  return load_sample<sample_of<in>>(row + column * sizeof(sample_of<in>));
}

template <int in, dither_packing packing>
void dither_plane_kernel(const dither_plane_line& line) {
  constexpr u32 pixels_per_byte = 8 / packing.bits;
  const u8* const level_lut = line.level_lut;
  const u8* const* const thresholds = line.thresholds;
  const u32 src_step = line.src_step, width = line.width;
  const u8* src = line.src;
  u8* out = line.out;
  u32 column = line.column;

  // `packed` and behind it the level of the pixel at `src`.
  const auto appended = [=](u32 packed, const u8* src, u32 column) {
    const u32 value = load_index<in>(src);
    const u32 interval = packing.one_interval() ? 0 : level_lut[value];
    const u32 level = interval + (value > load_threshold<in>(thresholds[interval], column));
    return packing.merge == dither_merge::adds ? (packed << packing.bits) + level : packed << packing.bits | level;
  };
  const auto pack_wrapping = [&](u32 pixels) {
    u32 packed = 0;
    for (; pixels != 0; --pixels, src += src_step) {
      packed = appended(packed, src, column);
      if (++column == width) column = 0;
    }
    return packed;
  };
  const auto store = [&](u32 packed) {
    if (packing.code == k_code::low_first) packed |= packed >> 1 & 0x55;              // 10 -> 11
    if (packing.code == k_code::high_first) packed += (packed | packed >> 1) & 0x55;  // 01 -> 10, 10 -> 11
    *out++ = u8(packed);
  };

  // Bytes run straight to the end of the matrix' row, or, where rows end with a byte of several pixels, on through the
  // line. Between straight runs stands the one byte that reaches into the next repeat.
  const bool whole_bytes = pixels_per_byte > 1 && width % pixels_per_byte == 0 && column % pixels_per_byte == 0;
  for (u32 left = line.pixels / pixels_per_byte; left != 0;) {
    const u32 straight = whole_bytes ? left : std::min(left, (width - column) / pixels_per_byte);
    left -= straight;
    const u8* const end = out + straight;
    while (out != end) {
      u32 packed = 0;
      for (u32 i = 0; i < pixels_per_byte; ++i, src += src_step) {
        packed = appended(packed, src, column + i);
        if constexpr (pixels_per_byte > 1) asm("" : "+r"(packed));  // one pixel at a time: registers are few
      }
      column += pixels_per_byte;
      if (whole_bytes && column == width) column = 0;
      store(packed);
    }
    if (column == width) column = 0;
    if (left != 0 && column + pixels_per_byte > width) {
      store(pack_wrapping(pixels_per_byte));
      --left;
    }
  }
  const u32 rest = line.pixels % pixels_per_byte;
  if (rest != 0) store(pack_wrapping(rest) << (pixels_per_byte - rest) * packing.bits);
}

using enum dither_merge;

template <dither_packing packing, u32 shortest_stretched_line>
constexpr dither_row stretching_row_of = {packing, dither_plane_kernel<8, packing>, dither_plane_kernel<16, packing>,
                                          stretch_kernels<packing>, shortest_stretched_line};

template <dither_packing packing>
constexpr dither_row row_of = {
    packing, dither_plane_kernel<8, packing>, dither_plane_kernel<16, packing>, {nullptr}, 0};

constexpr std::array<dither_row, 12> rows{{
    stretching_row_of<dither_packing{1, fits}, 32>,
    stretching_row_of<dither_packing{2, fits}, 48>,
    stretching_row_of<dither_packing{4, fits}, 128>,
    stretching_row_of<dither_packing{2, fits, k_code::low_first}, 48>,
    stretching_row_of<dither_packing{2, fits, k_code::high_first}, 48>,
    row_of<dither_packing{1, ors}>,
    row_of<dither_packing{2, ors}>,
    row_of<dither_packing{4, ors}>,
    row_of<dither_packing{1, adds}>,
    row_of<dither_packing{2, adds}>,
    row_of<dither_packing{4, adds}>,
    row_of<dither_packing{8, fits}>,
}};

// mix: null for the general kernel. coded: K of three levels under k_code3.
constexpr u32 row_for(const dither_mix* mix, u32 bits, u32 level_count, bool coded) {
  dither_packing packing{u8(bits), level_count <= 1u << bits ? fits : mix != nullptr ? ors : adds};
  if (coded && mix != nullptr) packing.code = mix->three_levels;
  return first_row(rows, [&](const dither_row& row) { return row.packing == packing; });
}

static_assert([] {
  const auto served = [](const dither_mix* mix, u32 bits, bool k) {
    for (const u32 level_count : {2u, 3u, 4u, 5u, 16u, 17u, 255u}) {
      if (row_for(mix, bits, level_count, k && level_count == 3) == rows.size()) return false;
    }
    return true;
  };
  for (const dither_mix& mix : dither_mixes) {
    if (!served(&mix, mix.k_bits, true) || (mix.planes > 1 && !served(&mix, mix.colour_bits, false))) return false;
  }
  return served(nullptr, 1, true) && served(nullptr, 2, true) && served(nullptr, 4, true) && served(nullptr, 8, true);
}());

}  // namespace

std::span<const dither_row> dither_rows() { return rows; }

void dither_select_rows(dither_handle& handle) {
  const dither_plane& k = handle.plane[k_table_slot];
  const auto is_mix_of_handle = [&](const dither_mix& mix) {
    bool same = mix.planes == handle.plane_count && mix.k_bits == k.bits;
    for (u32 r = 1; r < handle.plane_count; ++r) same = same && mix.colour_bits == handle.plane[table_slot[r]].bits;
    return same;
  };
  handle.level = level_of_processor();
  const u32 found = first_row(dither_mixes, is_mix_of_handle);
  const dither_mix* const mix = found == dither_mixes.size() ? nullptr : &dither_mixes[found];
  const bool coded_k = has(handle.flags, VRK_K_CODE3) && k.level_count == 3;

  for (u32 r = 0; r < handle.plane_count; ++r) {
    dither_plane& plane = handle.plane[table_slot[r]];
    plane.row = u8(row_for(mix, plane.bits, plane.level_count, coded_k && r == 0));
  }
}

namespace {

// Bytes from a table's first row to the one that the next scanline meets.
u32 row_start(const dither_handle& handle, const dither_plane& plane) {
  return handle.line_counter % plane.height * threshold_row_bytes(plane.width);
}

bool goes_in_stretches(const dither_handle& handle, const dither_row& row) {
  return handle.block_width >= row.shortest_stretched_line && !has(handle.flags, VRK_IN16) &&
         row.stretch[handle.level] != nullptr;
}

// Returns whether there are planes left, which go in stretches. Not inline, for its stack, as the next.
__attribute__((noinline)) bool dither_interleaved(const dither_handle& handle, const u8* src,
                                                  const dither_outputs& out) {
  const bool in16 = has(handle.flags, VRK_IN16);
  const u32 sample_bytes = in16 ? 2 : 1;
  bool planes_left = false;
  for (u32 r = 0; r < handle.plane_count; ++r) {
    const dither_plane& plane = handle.plane[table_slot[r]];
    const dither_row& row = rows[plane.row];
    if (goes_in_stretches(handle, row)) {
      planes_left = true;
      continue;
    }
    const u32 start = row_start(handle, plane);
    const u8* thresholds[254];
    for (u32 j = 0; j + 1 < plane.level_count; ++j) thresholds[j] = plane.thresholds[j].get() + start;
    (in16 ? row.from_16
          : row.from_8)({src + r * sample_bytes, handle.plane_count * sample_bytes, out[r], handle.block_width,
                         plane.level_lut.get(), thresholds, plane.width, handle.block_x % plane.width});
  }
  return planes_left;
}

__attribute__((noinline)) void dither_in_stretches(const dither_handle& handle, const u8* src,
                                                   const dither_outputs& out) {
  const u32 planes = handle.plane_count;
  std::array<dither_stretch_kernel*, plane_slots> kernels{};  // null: not in stretches
  std::array<dither_stretch, plane_slots> stretches;
  for (u32 r = 0; r < planes; ++r) {
    const dither_plane& plane = handle.plane[table_slot[r]];
    const dither_row& row = rows[plane.row];
    if (goes_in_stretches(handle, row)) kernels[r] = row.stretch[handle.level];
    stretches[r] = {.samples = nullptr,
                    .out = out[r],
                    .pixels = 0,
                    .thresholds = plane.thresholds[0].get() + row_start(handle, plane),
                    .table_bytes = threshold_row_bytes(plane.width) * plane.height,
                    .intervals = plane.level_count - 1u,
                    .width = plane.width,
                    .column = handle.block_x % plane.width};
  }

  alignas(64) u8 samples[stretch_bytes];
  const u32 longest = planes == 1 ? handle.block_width : stretch_pixels(planes);
  for (u32 left = handle.block_width, pixels; left != 0; left -= pixels, src += planes * pixels) {
    pixels = std::min(left, longest);
    if (planes != 1) split_kernels[handle.level](src, planes, pixels, samples);
    for (u32 r = 0; r < planes; ++r) {
      if (kernels[r] == nullptr) continue;
      dither_stretch& stretch = stretches[r];
      stretch.samples = planes == 1 ? src : samples + r * stretch_pixels(planes);
      stretch.pixels = pixels;
      kernels[r](stretch);
      stretch.out += packed_bytes(handle.plane[table_slot[r]].bits, pixels);
      stretch.column = (stretch.column + pixels) % stretch.width;
    }
  }
}

}  // namespace

void dither_line(dither_handle& handle, const u8* src, const dither_outputs& out) {
  if (dither_interleaved(handle, src, out)) dither_in_stretches(handle, src, out);
  ++handle.line_counter;
}

}  // namespace vrk
