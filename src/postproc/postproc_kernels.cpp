// The post-processing transform. It goes plane by plane: what curves a plane has is then settled before its samples
// are, one curve at a time stays in the first-level cache, and splitting four planes into six is a matter of offsets.
#include <algorithm>
#include <cstring>
#include <type_traits>

#include "base/carver.h"
#include "base/flags.h"
#include "postproc/postproc_handle.h"
#include "vrk.h"

namespace vrk {
namespace {

// Pixels of one round over the planes: source and destination stay in the first-level cache meanwhile.
constexpr u32 pixels_per_round = 512;

struct plane_samples {
  const u8* src;
  u32 src_step;  // bytes from pixel to pixel
  u8* dst;
  u32 dst_step;
  u32 pixel_count;
};

// value_of: index -> output sample; an 8-bit sample takes the low byte.
template <class In, class Out, class Value>
void map_samples(const plane_samples& plane, Value value_of) {
  const u8* src = plane.src;
  u8* dst = plane.dst;
  const u32 src_step = plane.src_step, dst_step = plane.dst_step;
#pragma GCC unroll 4  // three memory accesses a sample leave little time for counting
  for (u32 left = plane.pixel_count; left != 0; --left, src += src_step, dst += dst_step) {
    const u32 sample = load_sample<In>(src);
    store_sample(dst, Out(value_of(sizeof(In) == 1 ? sample : sample >> 6)));
  }
}

// The sample of a plane without curves beside planes with curves: the index brought to the output's scale.
template <class In, class Out>
constexpr u32 rescale(u32 index) {
  if (sizeof(In) == sizeof(u8)) return sizeof(Out) == sizeof(u8) ? index : widen_8_to_16(index);
  return sizeof(Out) == sizeof(u8) ? index >> 2 : widen_10_to_16(index);
}

template <class Out>
const Out* composed_table(const postproc_handle& handle) {
  if constexpr (std::is_same_v<Out, u8>) {
    return handle.composed8.get();
  } else {
    return handle.composed16.get();
  }
}

template <class In, class Out>
void transform_plane(const postproc_handle& handle, u32 p, const plane_samples& plane) {
  const u16* const main_curve = handle.main_curve[p].get();
  const u16* const plane_curve = handle.plane_curve[p].get();
  const Out* const composed = composed_table<Out>(handle);

  if (main_curve == nullptr && plane_curve == nullptr) {
    map_samples<In, Out>(plane, [](u32 i) { return rescale<In, Out>(i); });
  } else if (composed != nullptr) {
    const Out* const curve = composed + p * index_count(handle.flags);
    map_samples<In, Out>(plane, [curve](u32 i) { return curve[i]; });
  } else if (main_curve != nullptr && plane_curve != nullptr) {
    map_samples<In, Out>(plane, [main_curve, plane_curve](u32 i) { return plane_curve[main_curve[i]]; });
  } else {
    const u16* const curve = main_curve != nullptr ? main_curve : plane_curve;
    map_samples<In, Out>(plane, [curve](u32 i) { return curve[i]; });
  }
}

// No curve anywhere: samples change their width only, and 16-bit ones keep all their bits.
template <class In, class Out>
void copy_samples(const u8* src, std::size_t count, u8* dst) {
  if constexpr (sizeof(In) == sizeof(Out)) {
    if (src != dst && count != 0) std::memcpy(dst, src, count * sizeof(In));
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      const u32 sample = load_sample<In>(src + i * sizeof(In));
      store_sample(dst + i * sizeof(Out), Out(sizeof(In) == sizeof(u8) ? widen_8_to_16(sample) : sample >> 8));
    }
  }
}

bool has_curves(const postproc_handle& handle) {
  const auto has_curve = [](const ref<u16>& curve) { return bool(curve); };
  return handle.main_curve[0] || std::any_of(handle.plane_curve, handle.plane_curve + handle.out_channels, has_curve);
}

template <class In, class Out>
void transform(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst) {
  const u32 in = handle.in_channels, out = handle.out_channels;
  if (!has_curves(handle)) return copy_samples<In, Out>(src, std::size_t{pixel_count} * out, dst);

  const u32 src_step = in * sizeof(In), dst_step = out * sizeof(Out);
  while (pixel_count != 0) {
    const u32 round = std::min(pixel_count, pixels_per_round);
    for (u32 p = 0; p < out; ++p) {
      const u32 from = p < in ? p : p - 3;  // the fifth plane comes from C, the sixth from M
      transform_plane<In, Out>(handle, p, {src + from * sizeof(In), src_step, dst + p * sizeof(Out), dst_step, round});
    }
    src += round * src_step;
    dst += round * dst_step;
    pixel_count -= round;
  }
}

using transform_fn = void(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst);
constexpr transform_fn* transforms[] = {transform<u8, u8>, transform<u8, u16>, transform<u16, u8>, transform<u16, u16>};

}  // namespace
}  // namespace vrk

extern "C" {

using namespace vrk;

uint32_t VRK_CALL vrk_xform_postproc(void* handle, const void* src, uint32_t pixel_count, void* dst) {
  const auto& h = record_of<postproc_handle>(handle);
  if (!is_channel_count(h.planes)) return 0;
  if (!has_path(h.in_channels, h.out_channels)) return 0;

  const bool in16 = has(h.flags, VRK_IN16), out16 = has(h.flags, VRK_OUT16);
  transforms[2 * in16 + out16](h, static_cast<const u8*>(src), pixel_count, static_cast<u8*>(dst));
  return 1;
}

}  // extern "C"
