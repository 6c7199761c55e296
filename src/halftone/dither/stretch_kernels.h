// Kernels for 8-bit samples that stand plane by plane, in vectors: they count the thresholds that a sample is above,
// all those of many pixels at once. Before them, pixels of several planes are taken apart, a stretch of the line at a
// time.
#pragma once

#include "base/level_code.h"
#include "halftone/dither/dither_kernels.h"

namespace vrk {

// Room for the samples of a stretch, plane after plane.
constexpr u32 stretch_bytes = 4096;
// Of the planes of a stretch, from one to the next; whole bytes of every packing, whole vectors.
constexpr u32 stretch_pixels(u32 planes) {
  return stretch_bytes / planes / 64 * 64;  // NOLINT(clang-analyzer-core.DivideZero): no handle is without planes
}

// Takes no more pixels of 4 or 6 planes apart than a stretch has.
using dither_split_kernel = void(const u8* src, u32 planes, u32 pixels, u8* samples);

#ifdef __SSE2__
namespace sse2 {
template <dither_packing packing>
void dither_stretch_of(const dither_stretch& at);
void split_pixels(const u8* src, u32 planes, u32 pixels, u8* samples);
}  // namespace sse2
#endif

#ifdef VRK_HAS_LEVELS
namespace avx2 {
template <dither_packing packing>
void dither_stretch_of(const dither_stretch& at);
void split_pixels(const u8* src, u32 planes, u32 pixels, u8* samples);
}  // namespace avx2
#endif

#if defined(__SSE2__) && defined(VRK_HAS_LEVELS)
template <dither_packing packing>
constexpr by_level<dither_stretch_kernel*> stretch_kernels{
    sse2::dither_stretch_of<packing>, sse2::dither_stretch_of<packing>, avx2::dither_stretch_of<packing>};
constexpr by_level<dither_split_kernel*> split_kernels{sse2::split_pixels, sse2::split_pixels, avx2::split_pixels};
#else
template <dither_packing packing>
constexpr by_level<dither_stretch_kernel*> stretch_kernels{nullptr};
constexpr by_level<dither_split_kernel*> split_kernels{nullptr};
#endif

}  // namespace vrk
