#include "csc/csc2_kernels.h"

#include <cstring>

#include "base/address_as.h"
#include "base/rows.h"
#include "csc/block_kernels.h"
#include "csc/convert.h"
#include "csc/tetra_sse2.h"

namespace vrk {
namespace {

// RGB pixels, or gray ones, which have no short cut for white.
template <csc_widths W, u32 inks, bool gray, bool bounded>
void csc2_grid_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  using reader = std::conditional_t<gray, gray_reader<W>, rgb_reader<W>>;
  using interpolation = interpolation_of<W, inks, gray, bounded>;
  convert_pixels<W, inks, reader, plane_writer<W.out, inks>, interpolation>(h.grid, h.layout, src, no_mask{},
                                                                            pixel_count, dst);
}

// Gray input of 8 bits has so few levels that a run is worth a table of their output pixels.
template <csc_widths W, u32 inks>
void csc2_gray_levels_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  constexpr u32 pixel_bytes = inks * sizeof(sample_of<W.out>);
  u8 level[256], pixel[256][pixel_bytes];
  for (u32 i = 0; i < 256; ++i) level[i] = u8(i);
  csc2_grid_kernel<W, inks, true, false>(h, level, 256, pixel[0]);
  for (; pixel_count != 0; --pixel_count, ++src, dst += pixel_bytes) std::memcpy(dst, pixel[*src], pixel_bytes);
}
constexpr u32 shortest_gray_levels_run = 320;  // 256 pixels for the table, and some for its memory

template <csc_widths W, u32 inks>
constexpr csc2_row long_gray_row() {
  if constexpr (W.in == 8) {
    return {inks, true, W, false, shortest_gray_levels_run, csc2_gray_levels_kernel<W, inks>};
  } else {
    return {inks, true, W, true, shortest_bounded_run, csc2_grid_kernel<W, inks, true, true>};
  }
}

template <csc_widths W>
void csc2_curve_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  using sample_in = sample_of<W.in>;
  using sample_out = sample_of<W.out>;
  const sample_out* const curve = address_as<const sample_out>(h.curve.get());
  for (; pixel_count != 0; --pixel_count, src += sizeof(sample_in), dst += sizeof(sample_out)) {
    store_sample(dst, curve[load_sample<sample_in>(src)]);
  }
}

constexpr auto rows = rows_of_all_csc_widths([]<csc_widths W>() {
  return std::array<csc2_row, 9>{{
      {4, false, W, true, shortest_bounded_run, csc2_block_kernels<W, 4>(csc2_grid_kernel<W, 4, false, true>)},
      {4, false, W, false, 0, csc2_grid_kernel<W, 4, false, false>},
      {6, false, W, true, shortest_bounded_run, csc2_block_kernels<W, 6>(csc2_grid_kernel<W, 6, false, true>)},
      {6, false, W, false, 0, csc2_grid_kernel<W, 6, false, false>},
      long_gray_row<W, 4>(),
      {4, true, W, false, 0, csc2_grid_kernel<W, 4, true, false>},
      long_gray_row<W, 6>(),
      {6, true, W, false, 0, csc2_grid_kernel<W, 6, true, false>},
      {1, true, W, false, 0, csc2_curve_kernel<W>},
  }};
});

// For runs of `pixel_count` pixels or more.
constexpr u32 row_for(u32 inks, bool gray, csc_widths widths, bool bounded, u32 pixel_count) {
  return first_row(rows, [=](const csc2_row& row) {
    return row.inks == inks && row.gray == gray && row.widths == widths && (bounded || !row.bounded) &&
           row.shortest_run <= pixel_count;
  });
}

// Without a bounded grid and a long run no row but the one for every grid and run serves.
static_assert(holds_for_all_csc_widths([](csc_widths widths) {
  const auto served = [=](u32 inks, bool gray) { return row_for(inks, gray, widths, false, 0) < rows.size(); };
  return served(4, false) && served(6, false) && served(4, true) && served(6, true) && served(1, true);
}));

}  // namespace

std::span<const csc2_row> csc2_rows() { return rows; }

void csc2_select_rows(u32 inks, bool gray, csc2_handle& h) {
  const csc_widths widths = csc_widths_of(h.flags);
  h.level = level_of_processor();
  h.row = row_for(inks, gray, widths, h.grid.bounded != 0, ~0u);
  h.short_run_row = row_for(inks, gray, widths, h.grid.bounded != 0, 0);
}

void csc2_convert(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  const csc2_row& row = rows[h.row];
  const csc2_row& chosen = pixel_count < row.shortest_run ? rows[h.short_run_row] : row;
  chosen.kernel[h.level](h, src, pixel_count, dst);
}

}  // namespace vrk
