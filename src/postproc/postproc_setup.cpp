#include "postproc/postproc_setup.h"

#include <algorithm>
#include <span>

#include "base/curve_image.h"
#include "base/flags.h"
#include "base/look_up_index.h"
#include "base/tag.h"
#include "postproc/postproc_kernels.h"

namespace vrk {
namespace {

// How a stored curve is made from the 1024 entries of an image: all of them, or the 256 that 8-bit levels read.
struct reduction {
  u32 entries;
  int shift;  // 16-bit entry -> 16, 10 or 8-bit value

  friend constexpr bool operator==(const reduction&, const reduction&) = default;
};
constexpr reduction take_8{1024, 8}, take_10{1024, 6}, take_16{1024, 0};
constexpr reduction pick_8{256, 8}, pick_10{256, 6}, pick_16{256, 0};

// The main curve: what it hands on is the output, or ten bits where a plane curve of 1024 entries follows.
constexpr reduction main_reduction(u32 flags, bool plane_curve_follows) {
  const bool in16 = has(flags, VRK_IN16), out16 = has(flags, VRK_OUT16), mid10 = has(flags, VRK_MID10);
  const bool hands_on_10 = plane_curve_follows && (in16 || out16 || mid10);
  const reduction reduced = hands_on_10 ? take_10 : out16 ? take_16 : take_8;
  return {index_count(input_bits(flags)), reduced.shift};
}

// The plane curve: as many entries as what reaches it has values.
constexpr reduction plane_reduction(u32 flags, bool main_curve_first) {
  const bool in16 = has(flags, VRK_IN16), out16 = has(flags, VRK_OUT16), mid10 = has(flags, VRK_MID10);
  const bool indexed_by_10 = in16 || (main_curve_first && (out16 || mid10));
  return indexed_by_10 ? (out16 ? take_16 : take_8) : (out16 ? pick_16 : pick_8);
}

static_assert(main_reduction(0, true) == pick_8 && plane_reduction(0, true) == pick_8);
static_assert(main_reduction(VRK_MID10, true) == pick_10 && plane_reduction(VRK_MID10, true) == take_8);
static_assert(main_reduction(VRK_MID10, false) == pick_8 && plane_reduction(VRK_MID10, false) == pick_8);
static_assert(main_reduction(VRK_OUT16, false) == pick_16 && plane_reduction(VRK_OUT16, false) == pick_16);
static_assert(main_reduction(VRK_IN16, true) == take_10 && plane_reduction(VRK_IN16, true) == take_8);

// Where a main table of 1, 4 (C, M, Y, K) or 6 (C, fifth, M, sixth, Y, K) curves keeps the curve of a plane. A pixel of
// fewer planes than the table has curves reads those of its own planes.
constexpr u32 main_curve_of(u32 curves, u32 plane) {
  constexpr u8 of_four[] = {3, 0, 1, 2};
  constexpr u8 of_six[postproc_planes] = {5, 0, 2, 4, 1, 3};
  return curves == 1 ? 0 : curves == 4 ? of_four[plane] : of_six[plane];
}

bool check_main_table(const void* image, u32 planes, postproc_plan& plan) {
  const curve_image table(image, curve_image::bytes(1));
  if (!table.check_header(version_002z) || !is_channel_count(table.curve_count())) return false;

  const u32 curves = table.curve_count();
  if (table.version() == tag("0010")) {  // the argument counts the channels
    plan = {planes, planes, curves};
  } else {  // the table counts them
    const u32 out = table.output_count() == 0 ? curves : table.output_count();
    if (out != curves && out != 4 && out != 6) return false;
    plan = {curves, out, out};
  }
  return planes <= curves;
}

bool check_plane_table(const void* image) {
  const curve_image table(image, curve_image::bytes(1));
  return table.check_header(version_001z, 1) && table.output_count() <= 1;
}

u16* reduced_curve(curve_image& image, u32 curve, reduction by, carver& block) {
  const std::span<u16> reduced = block.section<u16>(by.entries);
  for (u32 i = 0; i < reduced.size(); ++i) {
    const u16 entry = by.entries == curve_image::entries ? image.entry(curve, i) : image.sample(curve, i);
    reduced[i] = u16(entry >> by.shift);
  }
  return reduced.data();
}

// Both curves of every plane in one table: a plane without curves holds its indexes.
template <class Out>
void postproc_compose(const postproc_handle& handle, carver& block, ref<Out>& composed) {
  const u32 indexes = index_count(input_bits(handle.flags));
  const std::span<Out> table = block.section<Out>(u64{handle.out_channels} * indexes);
  for (u32 entry = 0; entry < table.size(); ++entry) {
    const u32 p = entry / indexes;
    u32 v = entry % indexes;
    if (handle.main_curve[p]) v = handle.main_curve[p][v];
    if (handle.plane_curve[p]) v = handle.plane_curve[p][v];
    table[entry] = Out(v);
  }
  composed = table.data();
}

constexpr u32 sample_bytes(u32 flags) { return u32(output_bits(flags)) / 8; }

}  // namespace

bool postproc_check(const postproc_request& request, postproc_plan& plan) {
  plan = {request.planes, request.planes, 0};
  if (request.main.on != 0 && !check_main_table(request.main.image, request.planes, plan)) return false;
  return std::ranges::all_of(
      request.plane, [](const postproc_table& table) { return table.on == 0 || check_plane_table(table.image); });
}

u64 postproc_handle_size(const postproc_request& request, const postproc_plan& plan) {
  if (!is_channel_count(plan.out_channels)) return 0;
  const u64 samples = plan.out_channels, indexes = index_count(input_bits(request.flags));

  u64 size = postproc_record_bytes;
  if (request.main.on != 0) size += 2 * samples * indexes + section_slack;
  for (const postproc_table& table : request.plane) {
    if (table.on != 0) size += 2 * plane_reduction(request.flags, request.main.on != 0).entries + section_slack;
  }
  if (has(request.flags, VRK_COMPOSE)) size += samples * indexes * sample_bytes(request.flags) + section_slack;
  return size + samples * sample_bytes(request.flags) + section_slack;  // the staging pixel
}

bool postproc_build(const postproc_request& request, const postproc_plan& plan, carver& block) {
  auto* const handle = block.record<postproc_handle>(postproc_record_bytes);
  if (handle == nullptr) return false;
  handle->flags = request.flags;
  handle->planes = u8(request.planes);
  handle->in_channels = u8(plan.in_channels);
  handle->out_channels = u8(plan.out_channels);
  postproc_select_rows(*handle);

  // Curves are multiples of 32 bytes: those of the main block follow each other without gaps.
  const bool has_main = request.main.on != 0;
  if (has_main) {
    // A table whose counts no transform serves need not hold more curves than it counts: the others read as 0.
    const u32 held = has_path(plan.in_channels, plan.out_channels) ? plan.main_curves : plan.in_channels;
    curve_image image(request.main.image, curve_image::bytes(held));
    for (u32 p = 0; p < plan.out_channels; ++p) {
      const reduction reduced = main_reduction(request.flags, request.plane[p].on != 0);
      handle->main_curve[p] = reduced_curve(image, main_curve_of(plan.main_curves, p), reduced, block);
    }
  }
  for (u32 p = 0; p < postproc_planes; ++p) {
    if (request.plane[p].on == 0) continue;
    curve_image image(request.plane[p].image, curve_image::bytes(1));
    handle->plane_curve[p] = reduced_curve(image, 0, plane_reduction(request.flags, has_main), block);
  }

  if (has(request.flags, VRK_COMPOSE)) {
    if (has(request.flags, VRK_OUT16)) {
      postproc_compose(*handle, block, handle->composed16);
    } else {
      postproc_compose(*handle, block, handle->composed8);
    }
  }

  // Room for a staging pixel belongs to the layout. The transform assembles pixels in registers and leaves it alone.
  block.section<u8>(u64{plan.out_channels} * sample_bytes(request.flags));
  return block.ok();
}

}  // namespace vrk
