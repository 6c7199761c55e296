#include "halftone/ed/ed_kernels.h"

#include "base/rows.h"
#include "halftone/ed/diffuse.h"
#include "halftone/ed/diffuse_two_levels.h"

namespace vrk {

namespace {

void diffuse_nothing(ed_handle&, const u8*) {}

template <class W, int planes>
constexpr ed_row row{W::flags, planes, false, diffuse_line<W, planes, +1>, diffuse_line<W, planes, -1>};
template <class W, int planes>
constexpr ed_row two_levels{W::flags, planes, true, diffuse_two_levels<W, planes, +1>,
                            diffuse_two_levels<W, planes, -1>};

using in16 = ed_widths<16, 10>;
using prec10 = ed_widths<8, 10>;
using plain = ed_widths<8, 8>;

constexpr std::array<ed_row, 19> rows{{
    two_levels<in16, 6>,
    two_levels<in16, 4>,
    two_levels<in16, 1>,  //
    two_levels<prec10, 6>,
    two_levels<prec10, 4>,
    two_levels<prec10, 1>,  //
    two_levels<plain, 6>,
    two_levels<plain, 4>,
    two_levels<plain, 1>,  //
    row<in16, 6>,
    row<in16, 4>,
    row<in16, 1>,  //
    row<prec10, 6>,
    row<prec10, 4>,
    row<prec10, 1>,  //
    row<plain, 6>,
    row<plain, 4>,
    row<plain, 1>,  //
    {0, 0, false, diffuse_nothing, diffuse_nothing},
}};

constexpr u32 row_for(u32 flags, u32 planes, bool two_levels) {
  const u32 widths = planes == 0 ? 0 : flags & (VRK_IN16 | VRK_PREC10);  // no plane has samples of any width
  return first_row(rows, [=](const ed_row& row) {
    return row.flags == widths && row.planes == planes && (two_levels || !row.two_levels);
  });
}

consteval bool every_handle_has_a_row() {
  for (const u32 flags : {0u, VRK_PREC10, VRK_IN16, VRK_IN16 | VRK_PREC10}) {
    for (const u32 planes : {0u, 1u, 4u, 6u}) {
      if (row_for(ed_adjust_flags(flags), planes, false) == rows.size()) return false;
    }
  }
  return true;
}
static_assert(every_handle_has_a_row());

}  // namespace

std::span<const ed_row> ed_rows() { return rows; }

u32 ed_select_row(u32 flags, u32 planes, bool two_levels) { return row_for(flags, planes, two_levels); }

}  // namespace vrk
