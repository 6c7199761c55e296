// Grid kernels that convert pixels in blocks, in the vectors of the higher processor levels. They serve bounded grids
// (see tetra_sse2.h) and runs that are worth their preparations.
#pragma once

#include "base/level_code.h"
#include "csc/csc1_kernels.h"
#include "csc/csc2_kernels.h"

namespace vrk {

#ifdef VRK_HAS_LEVELS

namespace sse41 {
template <csc_widths W>
void csc1_block_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst);
template <csc_widths W, u32 inks>
void csc2_block_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst);
}  // namespace sse41
namespace avx2 {
template <csc_widths W>
void csc1_block_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst);
template <csc_widths W, u32 inks>
void csc2_block_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst);
}  // namespace avx2

// base: the kernel of other processors.
template <csc_widths W>
constexpr by_level<csc1_kernel*> csc1_block_kernels(csc1_kernel* base) {
  return {base, sse41::csc1_block_kernel<W>, avx2::csc1_block_kernel<W>};
}
template <csc_widths W, u32 inks>
constexpr by_level<csc2_kernel*> csc2_block_kernels(csc2_kernel* base) {
  return {base, sse41::csc2_block_kernel<W, inks>, avx2::csc2_block_kernel<W, inks>};
}

#else

template <csc_widths W>
constexpr by_level<csc1_kernel*> csc1_block_kernels(csc1_kernel* base) {
  return {base};
}
template <csc_widths W, u32 inks>
constexpr by_level<csc2_kernel*> csc2_block_kernels(csc2_kernel* base) {
  return {base};
}

#endif

}  // namespace vrk
