#include "csc/csc1_kernels.h"

#include "base/rows.h"
#include "csc/block_kernels.h"
#include "csc/convert.h"
#include "csc/csc1_rules.h"
#include "csc/tetra_sse2.h"

namespace vrk {
namespace {

template <csc_widths W, bool bounded>
void csc1_grid_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  using interpolation = interpolation_of<W, csc1_stored, false, bounded>;
  convert_pixels<W, csc1_stored, rgb_reader<W>, rgb_writer<W.out>, interpolation>(h.grid, h.layout, src, bit_mask{mask},
                                                                                  pixel_count, dst);
}

constexpr auto rows = rows_of_all_csc_widths([]<csc_widths W>() {
  return std::array<csc1_row, 6>{{
      {csc1_rule::grid, W, true, shortest_bounded_run, csc1_block_kernels<W>(csc1_grid_kernel<W, true>)},
      {csc1_rule::grid, W, false, 0, csc1_grid_kernel<W, false>},
      {csc1_rule::through, W, false, 0, csc1_rgb_kernel<W, csc1_rule::through>},
      {csc1_rule::gray, W, false, 0, csc1_mono_kernel<W, csc1_rule::gray>},
      {csc1_rule::black, W, false, 0, csc1_mono_kernel<W, csc1_rule::black>},
      {csc1_rule::solid, W, false, 0, csc1_rgb_kernel<W, csc1_rule::solid>},
  }};
});

// For runs of `pixel_count` pixels or more.
constexpr u32 row_for(csc1_rule rule, csc_widths widths, bool bounded, u32 pixel_count) {
  return first_row(rows, [=](const csc1_row& row) {
    return row.rule == rule && row.widths == widths && (bounded || !row.bounded) && row.shortest_run <= pixel_count;
  });
}

// Without a bounded grid and a long run no row but the one for every grid and run serves.
static_assert(holds_for_all_csc_widths([](csc_widths widths) {
  return std::ranges::all_of(csc1_rules, [=](csc1_rule rule) { return row_for(rule, widths, false, 0) < rows.size(); });
}));

}  // namespace

std::span<const csc1_row> csc1_rows() { return rows; }

void csc1_select_rows(csc1_rule rule, csc1_handle& h) {
  const csc_widths widths = csc_widths_of(h.flags);
  h.level = level_of_processor();
  h.row = row_for(rule, widths, h.grid.bounded != 0, ~0u);
  h.short_run_row = row_for(rule, widths, h.grid.bounded != 0, 0);
}

void csc1_convert(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  const csc1_row& row = rows[h.row];
  const csc1_row& chosen = pixel_count < row.shortest_run ? rows[h.short_run_row] : row;
  chosen.kernel[h.level](h, src, mask, pixel_count, dst);
}

}  // namespace vrk
