#include "halftone/dither/dither_kernels.h"

#include "base/flags.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vrk {
namespace {

// Codes of the levels of a three-level K plane of 2 bits.
enum class k_code : u8 { level, low_first /* 0, 1, 3 */, high_first /* 0, 2, 3 */ };

// How the levels of one plane become bytes. The two ways to merge them differ where a table has more levels than its
// bits can tell: then a level runs over into the pixel before it.
struct dither_packing {
  u8 bits;                      // per pixel
  bool adds;                    // else ORs
  k_code code = k_code::level;  // of K
  bool one_interval = false;    // two levels: there is no interval to look up

  friend constexpr bool operator==(const dither_packing&, const dither_packing&) = default;
};

constexpr std::array<dither_packing, 10> dither_packings{{
    {1, false, k_code::level, true},
    {1, false},
    {2, false},
    {4, false},
    {2, false, k_code::low_first},
    {2, false, k_code::high_first},
    {1, true},
    {2, true},
    {4, true},
    {8, true},
}};

// The mixes of bits that have a kernel of their own: it ORs, and under k_code3 it writes a K plane of three levels in
// a code. All other mixes take the general kernel, which adds and knows no code.
struct dither_mix {
  u8 planes;
  u8 colour_bits;  // of C, M, Y, fifth, sixth
  u8 k_bits;
  k_code three_levels = k_code::level;
};

constexpr dither_mix dither_mixes[] = {
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
};

// One plane of one scanline.
struct plane_line {
  const u8* src;
  u32 src_step;  // bytes from pixel to pixel
  u8* out;
  u32 pixels;
  const u8* level_lut;
  const u16* const* rows;  // of the interval's threshold table: the row of this line
  u32 width, column;       // of the matrix; column of the first pixel
};

template <class In, dither_packing packing>
void dither_plane_line(const plane_line& line) {
  constexpr u32 pixels_per_byte = 8 / packing.bits;
  const u8* const level_lut = line.level_lut;
  const u16* const* const rows = line.rows;
  const u32 src_step = line.src_step, width = line.width;
  const u8* src = line.src;
  u8* out = line.out;
  u32 column = line.column;

  // `packed` and behind it the level of the pixel at `src`.
  const auto appended = [=](u32 packed, const u8* src, u32 column) {
    const u32 sample = load_sample<In>(src);
    const u32 value = sizeof(In) == 1 ? sample : sample >> 6;
    const u32 interval = packing.one_interval ? 0 : level_lut[value];
    const u32 level = interval + (value > rows[interval][column]);
    return packing.adds ? (packed << packing.bits) + level : packed << packing.bits | level;
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
    for (const u8* const end = out + straight; out != end;) {
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

using plane_line_fn = void(const plane_line& line);

template <class In, std::size_t... row>
constexpr std::array<plane_line_fn*, sizeof...(row)> kernels_of(std::index_sequence<row...>) {
  return {dither_plane_line<In, dither_packings[row]>...};
}
constexpr auto kernels_8 = kernels_of<u8>(std::make_index_sequence<dither_packings.size()>{});
constexpr auto kernels_16 = kernels_of<u16>(std::make_index_sequence<dither_packings.size()>{});

}  // namespace

void dither_choose_packings(dither_handle& handle) {
  const dither_plane& k = handle.plane[k_table_slot];
  const auto is_mix_of_handle = [&](const dither_mix& mix) {
    bool same = mix.planes == handle.plane_count && mix.k_bits == k.bits;
    for (u32 r = 1; r < handle.plane_count; ++r) same = same && mix.colour_bits == handle.plane[table_slot[r]].bits;
    return same;
  };
  const auto* const mix = std::find_if(std::begin(dither_mixes), std::end(dither_mixes), is_mix_of_handle);
  const bool general = mix == std::end(dither_mixes);
  const bool coded_k = !general && has(handle.flags, VRK_K_CODE3) && k.level_count == 3;

  for (u32 r = 0; r < handle.plane_count; ++r) {
    dither_plane& plane = handle.plane[table_slot[r]];
    dither_packing packing{plane.bits, general};
    if (coded_k && r == 0) packing.code = mix->three_levels;
    if (plane.bits == 1 && plane.level_count == 2) packing = {1, false, k_code::level, true};
    plane.packing = u8(std::find(dither_packings.begin(), dither_packings.end(), packing) - dither_packings.begin());
  }
}

void dither_line(dither_handle& handle, const u8* src, const dither_outputs& out) {
  const bool in16 = has(handle.flags, VRK_IN16);
  const u32 sample_bytes = in16 ? 2 : 1;
  for (u32 r = 0; r < handle.plane_count; ++r) {
    const dither_plane& plane = handle.plane[table_slot[r]];
    const u32 row_start = handle.line_counter % plane.height * plane.width;
    const u16* rows[254];
    for (u32 j = 0; j + 1 < plane.level_count; ++j) rows[j] = plane.thresholds[j].get() + row_start;
    const plane_line line{src + r * sample_bytes,
                          handle.plane_count * sample_bytes,
                          out[r],
                          handle.block_width,
                          plane.level_lut.get(),
                          rows,
                          plane.width,
                          handle.block_x % plane.width};
    (in16 ? kernels_16 : kernels_8)[plane.packing](line);
  }
  ++handle.line_counter;
}

}  // namespace vrk
