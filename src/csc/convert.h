// The loop of all grid kernels.
#pragma once

#include "csc/grid.h"
#include "csc/pixel.h"

namespace vrk {

// A grid point as it leaves the converter.
template <csc_widths W, u32 stored>
out_pixel<W.out> point_output(const u8* point) {
  using sample = sample_of<W.work>;
  out_pixel<W.out> out{};
  for (u32 c = 0; c < stored; ++c) out.sample[c] = to_output<W>(load_sample<sample>(point + c * sizeof(sample)));
  return out;
}

// Converts pixels one after the other. RGB white bypasses the grid; a pixel equal to the one before repeats its output.
// Masked pixels become 0. An input pixel is read before its output is written.
template <csc_widths W, u32 stored, class reader, class writer, class interpolation, class mask_type>
void convert_pixels(const color_grid& grid, u32 layout, const u8* src, mask_type mask, u32 pixel_count, u8* dst) {
  using pixel = rgb_pixel<W>;
  using output = out_pixel<W.out>;
  const reader read(layout);
  const writer write(layout);
  const interpolation interpolate(grid);
  const output white = point_output<W, stored>(last_point<W.work>(grid, stored));
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
