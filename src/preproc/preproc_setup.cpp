#include "preproc/preproc_setup.h"

#include <numeric>

#include "base/curve_image.h"
#include "base/tag.h"
#include "preproc/preproc_kernels.h"
#include "preproc/tone_tables.h"

namespace vrk {

namespace {

constexpr u32 stage_entries(u32 flags) { return preproc_is_wide(flags) ? 1024 : input_levels; }  // of lift and contrast
constexpr u32 staging_bytes(u32 flags) { return has(flags, VRK_OUT16) ? 8 : 4; }

// At most 15658 bytes: no term depends on a table's contents.
constexpr u32 preproc_size(const preproc_request& request) {
  const auto table = [](u32 entries) { return section_slack + entries * u32(sizeof(u16)); };
  u32 size = request.record_bytes;
  if (request.balance_steps) size += 3 * u32(sizeof(i16)) + table(3 * input_levels);
  if (request.lift_step != 0) size += 1 + table(stage_entries(request.flags));
  if (request.contrast_step != 0) size += 1 + table(stage_entries(request.flags));
  if (request.use_curve) size += table(curve_image::entries);
  if (request.use_rgb_curves) size += table(3 * curve_image::entries);
  if (has(request.flags, VRK_COMPOSE)) size += table(3 * input_levels);
  return size + section_slack + staging_bytes(request.flags);
}
static_assert(preproc_size({.record_bytes = 65}) == 100 &&
              preproc_size({.record_bytes = 57, .flags = VRK_OUT16}) == 96);
static_assert(preproc_size({.record_bytes = 65, .use_rgb_curves = true, .flags = VRK_COMPOSE}) == 100 + 6175 + 1567);

// Images come without a length. Before its header is known, one is taken to hold that and no more.
bool preproc_check_curve(const void* table, u32 curves) {
  return curve_image(table, curve_image::bytes(0)).check_header(version_001z, curves);
}

// The top ten bits of every entry, curve after curve. The image is taken to hold as many as there is room for.
u16* take_curves(const void* table, std::span<u16> entries) {
  const u32 curves = u32(entries.size()) / curve_image::entries;
  curve_image image(table, curve_image::bytes(curves));
  u16* out = entries.data();
  for (u32 curve = 0; curve < curves; ++curve) {
    for (u32 i = 0; i < curve_image::entries; ++i) *out++ = image.entry(curve, i) >> 6;
  }
  return entries.data();
}

// The size rule covers every piece at every address of the block, so each is there to be filled.
void preproc_build(const preproc_request& request, carver& block) {
  const u32 flags = request.flags, entries = stage_entries(flags);
  preproc_handle& handle = *block.record<preproc_handle>(request.record_bytes);
  handle.flags = flags;
  const auto keep_step = [&](i8 step) {
    u8* const copy = block.take<u8>(1).data();
    *copy = u8(step);
    return copy;
  };

  if (request.balance_steps) {
    const std::span<u8> steps = block.take<u8>(3 * sizeof(i16));
    const std::span<u16> tables = block.section<u16>(3 * input_levels);
    for (u32 channel = 0; channel < 3; ++channel) {
      const i32 step = (*request.balance_steps)[channel];
      store_sample(&steps[channel * sizeof(i16)], i16(step));
      balance_curve(step, request.balance_unit, entries - 1, tables.subspan(input_levels * channel, input_levels));
    }
    handle.balance_steps = steps.data();
    handle.balance = tables.data();
  }
  if (request.lift_step != 0) {
    handle.lift_step = keep_step(request.lift_step);
    const std::span<u16> table = block.section<u16>(entries);
    lift_curve(request.lift_step, table);
    handle.lift = table.data();
  }
  if (request.contrast_step != 0) {
    handle.contrast_step = keep_step(request.contrast_step);
    const std::span<u16> table = block.section<u16>(entries);
    contrast_curve(request.contrast_exponent, table);
    handle.contrast = table.data();
  }
  if (request.use_curve) handle.curve = take_curves(request.curve, block.section<u16>(curve_image::entries));
  if (request.use_rgb_curves) {
    handle.rgb_curves = take_curves(request.rgb_curves, block.section<u16>(3 * curve_image::entries));
  }
  const bool any_stage = handle.balance || handle.lift || handle.contrast || handle.curve || handle.rgb_curves;
  handle.value_bits = any_stage && preproc_is_wide(flags) ? 10 : 8;

  if (has(flags, VRK_COMPOSE)) {
    const std::span<u16> tables = block.section<u16>(3 * input_levels);
    for (u32 channel = 0; channel < 3; ++channel) {
      const std::span<u16> table = tables.subspan(input_levels * channel, input_levels);
      std::iota(table.begin(), table.end(), u16{0});
      preproc_walk(handle, channel, table);
    }
    handle.combined = tables.data();
  }
  handle.staging = block.section<u8>(staging_bytes(flags)).data();
}

}  // namespace

u32 preproc_create(preproc_request request, void* mem) {
  request.flags &= ~VRK_IN16;
  if (request.use_curve && request.curve == nullptr) return 0;
  if (request.use_rgb_curves && request.rgb_curves == nullptr) return 0;
  const u32 size = preproc_size(request);
  if (mem == nullptr) {
    if (request.use_curve && !preproc_check_curve(request.curve, 1)) return 0;
    if (request.use_rgb_curves && !preproc_check_curve(request.rgb_curves, 3)) return 0;
    return size;
  }
  carver block(mem, size);
  preproc_build(request, block);
  return block.ok() ? u32(block.used()) : 0;
}

}  // namespace vrk
