// The transform goes plane by plane: what curves a plane has is then settled before its samples are, one curve at a
// time stays in the first-level cache, and splitting four planes into six is a matter of offsets.
#include "postproc/postproc_kernels.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/flags.h"
#include "base/look_up_index.h"
#include "base/rows.h"
#include "postproc/four_planes.h"

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
template <int in, int out, class Value>
void map_samples(const plane_samples& plane, Value value_of) {
  const u8* src = plane.src;
  u8* dst = plane.dst;
  const u32 src_step = plane.src_step, dst_step = plane.dst_step;
#pragma GCC unroll 4  // three memory accesses a sample leave little time for counting
  for (u32 left = plane.pixel_count; left != 0; --left, src += src_step, dst += dst_step) {
    store_sample(dst, sample_of<out>(value_of(load_index<in>(src))));
  }
}

template <int out>
const sample_of<out>* composed_table(const postproc_handle& handle) = delete;
template <>
const u8* composed_table<8>(const postproc_handle& handle) {
  return handle.composed8.get();
}
template <>
const u16* composed_table<16>(const postproc_handle& handle) {
  return handle.composed16.get();
}

// Calls `use` with what makes an output sample of an index in plane p.
template <int in, int out, class Use>
void with_values_of(const postproc_handle& handle, u32 p, Use use) {
  const u16* const main_curve = handle.main_curve[p].get();
  const u16* const plane_curve = handle.plane_curve[p].get();
  const sample_of<out>* const composed = composed_table<out>(handle);

  if (main_curve == nullptr && plane_curve == nullptr) {  // beside planes with curves
    use([](u32 i) { return rescale<index_bits<in>(), out>(i); });
  } else if (composed != nullptr) {
    const sample_of<out>* const curve = composed + p * index_count(in);
    use([curve](u32 i) { return curve[i]; });
  } else if (main_curve != nullptr && plane_curve != nullptr) {
    use([main_curve, plane_curve](u32 i) { return plane_curve[main_curve[i]]; });
  } else {
    const u16* const curve = main_curve != nullptr ? main_curve : plane_curve;
    use([curve](u32 i) { return curve[i]; });
  }
}

template <int in, int out>
void transform_plane(const postproc_handle& handle, u32 p, const plane_samples& plane) {
  with_values_of<in, out>(handle, p, [&](auto value_of) { map_samples<in, out>(plane, value_of); });
}

// No curve anywhere: samples change their width only, and 16-bit ones keep all their bits.
template <int in, int out>
void copy_samples(const u8* src, std::size_t count, u8* dst) {
  using sample_in = sample_of<in>;
  using sample_out = sample_of<out>;
  if constexpr (in == out) {
    if (src != dst && count != 0) std::memcpy(dst, src, count * sizeof(sample_in));
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      const sample_in sample = load_sample<sample_in>(src + i * sizeof(sample_in));
      store_sample(dst + i * sizeof(sample_out), rescale<in, out>(sample));
    }
  }
}

bool has_curves(const postproc_handle& handle) {
  const auto has_curve = [](const ref<u16>& curve) { return bool(curve); };
  return handle.main_curve[0] || std::any_of(handle.plane_curve, handle.plane_curve + handle.out_channels, has_curve);
}

template <int in, int out>
void postproc_line(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst) {
  constexpr u32 in_bytes = sizeof(sample_of<in>), out_bytes = sizeof(sample_of<out>);
  const u32 in_channels = handle.in_channels, out_channels = handle.out_channels;
  if (!has_curves(handle)) return copy_samples<in, out>(src, std::size_t{pixel_count} * out_channels, dst);

  const u32 src_step = in_channels * in_bytes, dst_step = out_channels * out_bytes;
  while (pixel_count != 0) {
    const u32 round = std::min(pixel_count, pixels_per_round);
    for (u32 p = 0; p < out_channels; ++p) {
      const u32 from = p < in_channels ? p : p - 3;  // the fifth plane comes from C, the sixth from M
      transform_plane<in, out>(handle, p, {src + from * in_bytes, src_step, dst + p * out_bytes, dst_step, round});
    }
    src += round * src_step;
    dst += round * dst_step;
    pixel_count -= round;
  }
}

// In one buffer the samples of a plane would fall on those that later planes come from, so a round is kept apart until
// it is complete.
void postproc_line_shortened_in_place(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst) {
  u8 round[pixels_per_round * postproc_planes];
  while (pixel_count != 0) {
    const u32 pixels = std::min(pixel_count, pixels_per_round), bytes = pixels * handle.out_channels;
    postproc_line<16, 8>(handle, src, pixels, round);
    std::memcpy(dst, round, bytes);
    src += pixels * handle.in_channels * sizeof(u16);
    dst += bytes;
    pixel_count -= pixels;
  }
}

#ifdef VRK_HAS_LEVELS

// Shorter runs are not worth tables of one look-up a plane, or of two.
constexpr u32 shortest_table_run = 96, shortest_composed_run = 512;

bool needs_composition(const postproc_handle& handle) {
  return !handle.composed8 && handle.main_curve[0] &&
         std::any_of(handle.plane_curve, handle.plane_curve + 4, [](auto& curve) { return bool(curve); });
}

// Four planes of bytes, through a table of bytes each. They are made anew for every run: a handle has them with compose
// only.
void postproc_line_of_four(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst) {
  if (pixel_count < shortest_table_run || !has_curves(handle) ||
      (pixel_count < shortest_composed_run && needs_composition(handle))) {
    return postproc_line<8, 8>(handle, src, pixel_count, dst);
  }
  byte_tables tables;
  for (u32 p = 0; p < 4; ++p) {
    with_values_of<8, 8>(handle, p, [table = tables.of_plane[p]](auto value_of) {
      for (u32 i = 0; i < 256; ++i) table[i] = u8(value_of(i));
    });
  }
  const u32 rest = pixel_count % four_plane_step;
  const std::size_t done = std::size_t{4} * (pixel_count - rest);
  avx2::look_up_four_planes(tables, src, pixel_count - rest, dst);
  postproc_line<8, 8>(handle, src + done, rest, dst + done);
}

constexpr by_level<postproc_kernel*> four_planes{postproc_line<8, 8>, postproc_line<8, 8>, postproc_line_of_four};

#else

constexpr by_level<postproc_kernel*> four_planes{postproc_line<8, 8>};

#endif

constexpr std::array<postproc_row, 6> rows{{
    {16, 8, true, false, {postproc_line_shortened_in_place}},
    {8, 8, false, true, four_planes},
    {8, 8, false, false, {postproc_line<8, 8>}},
    {8, 16, false, false, {postproc_line<8, 16>}},
    {16, 8, false, false, {postproc_line<16, 8>}},
    {16, 16, false, false, {postproc_line<16, 16>}},
}};

constexpr u32 row_for(u32 flags, bool in_place, bool four) {
  return first_row(rows, [=](const postproc_row& row) {
    return row.in == input_bits(flags) && row.out == output_bits(flags) && (in_place || !row.in_place) &&
           (four || !row.four);
  });
}

static_assert([] {
  for (const u32 flags : {u32{0}, VRK_IN16, VRK_OUT16, VRK_IN16 | VRK_OUT16}) {
    if (row_for(flags, false, false) == rows.size()) return false;
  }
  return true;
}());

}  // namespace

std::span<const postproc_row> postproc_rows() { return rows; }

void postproc_select_rows(postproc_handle& handle) {
  const bool four = handle.in_channels == 4 && handle.out_channels == 4;
  handle.level = level_of_processor();
  handle.row = u8(row_for(handle.flags, false, four));
  handle.in_place_row = u8(row_for(handle.flags, true, four));
}

u32 postproc_transform(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst) {
  if (!is_channel_count(handle.planes) || !has_path(handle.in_channels, handle.out_channels)) return 0;
  const postproc_row& row = rows[src == dst ? handle.in_place_row : handle.row];
  row.kernel[handle.level](handle, src, pixel_count, dst);
  return 1;
}

}  // namespace vrk
