#include "halftone/ed/ed_kernels.h"

#include "base/flags.h"
#include "halftone/ed/diffuse.h"

namespace vrk {

namespace {

struct ed_kernel_forms {
  ed_kernel even, odd;
};

template <ed_widths W, int planes>
constexpr ed_kernel_forms forms{diffuse_line<W, planes, +1>, diffuse_line<W, planes, -1>};

constexpr ed_widths in16{16, 10}, prec10{8, 10}, plain{8, 8};

constexpr ed_kernel_forms rows[] = {
    forms<in16, 6>,   forms<in16, 4>,   forms<in16, 1>,    //
    forms<prec10, 6>, forms<prec10, 4>, forms<prec10, 1>,  //
    forms<plain, 6>,  forms<plain, 4>,  forms<plain, 1>,
};

}  // namespace

u32 ed_kernel_row(u32 flags, u32 planes) {
  const u32 widths = has(flags, VRK_IN16) ? 0 : has(flags, VRK_PREC10) ? 3 : 6;
  return widths + (planes == 6 ? 0 : planes == 4 ? 1 : 2);
}

ed_kernel ed_kernel_of(u32 row, u32 line) { return line % 2 == 0 ? rows[row].even : rows[row].odd; }

}  // namespace vrk
