// The loop of all grid kernels.
#pragma once

#include "csc/tetra.h"
#ifdef __SSE2__
#include "csc/tetra_sse2.h"
#else  // other processors interpolate all grids as it is defined
namespace vrk {
template <csc_widths W, u32 stored>
using lane_interpolation = tetra_interpolation<W, stored, true>;
}  // namespace vrk
#endif

namespace vrk {

// Which interpolation a kernel uses.
enum class method { tetra, lanes };

template <csc_widths W, u32 stored, class reader, method how>
using interpolation_of = std::conditional_t<how == method::lanes, lane_interpolation<W, stored>,
                                            tetra_interpolation<W, stored, reader::gray>>;

// The look-up tables of the lanes, 6 KiB of stack, are made anew for every run: a handle has no room for them,
// and transforms do not write it. For runs shorter than this they cost more than they save.
constexpr u32 short_run = 192;

// Converts pixels one after the other. RGB white bypasses the grid; a pixel equal to the one before repeats its output.
// Masked pixels become 0. An input pixel is read before its output is written.
template <csc_widths W, u32 stored, class reader, class writer, method how, class mask_type>
void convert_pixels(const color_grid& grid, const u16* white_out, u32 layout, const u8* src, mask_type mask,
                    u32 pixel_count, u8* dst) {
  if constexpr (how == method::lanes) {
    if (pixel_count < short_run) {
      return convert_pixels<W, stored, reader, writer, method::tetra>(grid, white_out, layout, src, mask, pixel_count,
                                                                      dst);
    }
  }
  using pixel = rgb_pixel<W>;
  using output = out_pixel<W.out>;
  const reader read(layout);
  const writer write(layout);
  const interpolation_of<W, stored, reader, how> interpolate(grid);
  const output white = output::of({white_out, stored});
  auto previous = pixel::no_pixel;
  output out{};
  for (u32 p = 0; p < pixel_count; ++p) {
    const pixel in = read(src);
    src += read.bytes();
    if (mask.covers(p)) {
      write(dst, output{});
    } else {
      const auto key = in.key();
      if (key != previous) {
        previous = key;
        out = !reader::gray && in.is_white() ? white : interpolate(in);
      }
      write(dst, out);
    }
    dst += write.bytes();
  }
}

}  // namespace vrk
