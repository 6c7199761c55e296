#include <array>
#include <utility>

#include "csc/convert.h"
#include "csc/csc1_rules.h"

namespace vrk {
namespace {

template <csc_widths W, method how>
void csc1_lut_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  convert_pixels<W, csc1_stored, rgb_reader<W>, rgb_writer<W.out>, how>(h.grid, h.white_out, h.layout, src,
                                                                        bit_mask{mask}, pixel_count, dst);
}

// Rows by family, within a family by widths.
using family = std::array<csc1_kernel*, csc_width_count>;

template <method how, std::size_t... i>
constexpr family grid_family(std::index_sequence<i...>) {
  return {csc1_lut_kernel<csc_width_rows[i], how>...};
}

template <csc1_rule rule, std::size_t... i>
constexpr family rule_family(std::index_sequence<i...>) {
  if constexpr (rule == csc1_rule::gray || rule == csc1_rule::black) {
    return {csc1_mono_kernel<csc_width_rows[i], rule>...};
  } else {
    return {csc1_rgb_kernel<csc_width_rows[i], rule>...};
  }
}

constexpr auto widths = std::make_index_sequence<csc_width_count>();
constexpr family csc1_rows[] = {
    grid_family<method::tetra>(widths),      grid_family<method::lanes>(widths),
    rule_family<csc1_rule::through>(widths), rule_family<csc1_rule::gray>(widths),
    rule_family<csc1_rule::black>(widths),   rule_family<csc1_rule::solid>(widths),
};

}  // namespace

u32 csc1_select_kernel(csc1_rule rule, u32 flags, bool bounded) {
  const u32 row = rule == csc1_rule::grid ? (bounded ? 1 : 0) : 1 + u32(rule);
  return row * csc_width_count + csc_width_row(flags);
}

csc1_kernel* csc1_kernel_of(const csc1_handle& h) {
  return csc1_rows[h.kernel / csc_width_count][h.kernel % csc_width_count];
}

}  // namespace vrk
