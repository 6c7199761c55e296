#include <array>
#include <utility>

#include "base/flags.h"
#include "csc/convert.h"
#include "csc/csc2_handle.h"

namespace vrk {
namespace {

// RGB pixels, or gray ones, which have no short cut for white.
template <csc_widths W, u32 inks, template <csc_widths> class reader, method how>
void csc2_grid_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  convert_pixels<W, inks, reader<W>, plane_writer<W.out, inks>, how>(h.grid, h.white_out, h.layout, src, no_mask{},
                                                                     pixel_count, dst);
}

template <class sample_in, class sample_out>
void csc2_curve_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  const sample_out* const curve = reinterpret_cast<const sample_out*>(h.curve.get());
  for (; pixel_count != 0; --pixel_count, src += sizeof(sample_in), dst += sizeof(sample_out)) {
    store_sample(dst, curve[load_sample<sample_in>(src)]);
  }
}

// Rows of grid kernels by family, within a family by widths.
using family = std::array<csc2_kernel*, csc_width_count>;

template <u32 inks, template <csc_widths> class reader, method how, std::size_t... i>
constexpr family grid_family(std::index_sequence<i...>) {
  return {csc2_grid_kernel<csc_width_rows[i], inks, reader, how>...};
}

constexpr auto widths = std::make_index_sequence<csc_width_count>();
constexpr family csc2_rows[] = {
    grid_family<4, rgb_reader, method::tetra>(widths),  grid_family<4, rgb_reader, method::lanes>(widths),
    grid_family<6, rgb_reader, method::tetra>(widths),  grid_family<6, rgb_reader, method::lanes>(widths),
    grid_family<4, gray_reader, method::tetra>(widths), grid_family<4, gray_reader, method::lanes>(widths),
    grid_family<6, gray_reader, method::tetra>(widths), grid_family<6, gray_reader, method::lanes>(widths),
};
constexpr u32 curve_row = std::size(csc2_rows) * csc_width_count;

constexpr csc2_kernel* csc2_curve_rows[] = {
    csc2_curve_kernel<u8, u8>,
    csc2_curve_kernel<u8, u16>,
    csc2_curve_kernel<u16, u8>,
    csc2_curve_kernel<u16, u16>,
};

}  // namespace

u32 csc2_select_kernel(u32 inks, bool gray, u32 flags, bool bounded) {
  const u32 row = (gray ? 4u : 0u) + (inks == 6 ? 2u : 0u) + (bounded ? 1u : 0u);
  return row * csc_width_count + csc_width_row(flags);
}

u32 csc2_select_curve_kernel(u32 flags) {
  return curve_row + (has(flags, VRK_IN16) ? 2 : 0) + (has(flags, VRK_OUT16) ? 1 : 0);
}

csc2_kernel* csc2_kernel_of(const csc2_handle& h) {
  if (h.kernel >= curve_row) return csc2_curve_rows[h.kernel - curve_row];
  return csc2_rows[h.kernel / csc_width_count][h.kernel % csc_width_count];
}

}  // namespace vrk
