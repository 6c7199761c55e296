#include "preproc/preproc_setup.h"

#include <numeric>

#include "base/curve_image.h"
#include "base/flags.h"
#include "base/samples.h"
#include "base/tag.h"
#include "preproc/preproc_handle.h"
#include "preproc/tone_tables.h"

namespace vrk {

namespace {

// With wide tables the first stage present turns 8-bit values into 10-bit ones.
constexpr bool preproc_is_wide(u32 flags) { return has(flags, VRK_OUT16 | VRK_MID10 | VRK_COMPOSE); }

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
std::span<u16> take_curves(const void* table, std::span<u16> entries) {
  const u32 curves = u32(entries.size()) / curve_image::entries;
  curve_image image(table, curve_image::bytes(curves));
  u16* out = entries.data();
  for (u32 curve = 0; curve < curves; ++curve) {
    for (u32 i = 0; i < curve_image::entries; ++i) *out++ = image.entry(curve, i) >> 6;
  }
  return entries;
}

// The tables of the stages that there are, empty for the others.
struct preproc_stages {
  std::span<u16> balance;         // R, G, B: an entry for each input level, 0 ... 255 (narrow) or 0 ... 1023 (wide)
  std::span<u16> lift, contrast;  // 256 entries 0 ... 255 (narrow) or 1024 entries 0 ... 1023 (wide)
  std::span<u16> curve;           // 1024 entries 0 ... 1023
  std::span<u16> rgb_curves;      // R, G, B: 1024 entries each, 0 ... 1023

  bool any() const {
    return !(balance.empty() && lift.empty() && contrast.empty() && curve.empty() && rgb_curves.empty());
  }
  bool differ_by_channel() const { return !(balance.empty() && rgb_curves.empty()); }

  // What comes out of the whole chain for every input level, by values of 10 bits with wide tables, else of 8.
  void walk(u32 channel, bool wide, std::span<u16> values) const {
    std::iota(values.begin(), values.end(), u16{0});
    bool is_10_bits = false;
    // by_10_bits: the table is entered by 10-bit values. shift: from its entries to the values it hands on.
    const auto apply = [&](std::span<const u16> table, bool by_10_bits, int shift) {
      const bool widen = by_10_bits && !is_10_bits;
      for (u16& v : values) v = u16(table[widen ? rescale<8, 10>(v) : v] >> shift);
      is_10_bits = wide;
    };
    const int curve_shift = wide ? 0 : 2;  // curves are always 10-bit tables
    if (!balance.empty()) apply(balance.subspan(input_levels * channel), false, 0);
    if (!lift.empty()) apply(lift, wide, 0);
    if (!contrast.empty()) apply(contrast, wide, 0);
    if (!rgb_curves.empty()) apply(rgb_curves.subspan(curve_image::entries * channel), true, curve_shift);
    if (!curve.empty()) apply(curve, true, curve_shift);
  }
};

template <int out>
void store_outputs(std::span<const u16> values, bool are_10_bits, u8* outputs) {
  for (const u16 v : values) {
    store_sample(outputs, are_10_bits ? rescale<10, out>(v) : rescale<8, out>(v));
    outputs += sizeof(sample_of<out>);
  }
}

// Transforms need the outputs of the chain alone. Without room of their own they take the place of a stage's table, of
// the parts that belong to the same channel or to one before it.
void preproc_build_outputs(const preproc_stages& stages, std::span<u16> own_room, preproc_handle& handle) {
  if (!stages.any()) return;
  const bool wide = preproc_is_wide(handle.flags), out16 = has(handle.flags, VRK_OUT16);
  std::span<u16> room = own_room;
  for (const std::span<u16> table : {stages.balance, stages.rgb_curves, stages.lift, stages.contrast, stages.curve}) {
    if (room.empty()) room = table;
  }
  u8* const outputs = reinterpret_cast<u8*>(room.data());
  handle.outputs = outputs;
  handle.channel_bytes = u16(stages.differ_by_channel() ? input_levels * (out16 ? 2 : 1) : 0);
  for (u32 channel = 0; channel < (stages.differ_by_channel() ? 3 : 1); ++channel) {
    std::array<u16, input_levels> values;
    stages.walk(channel, wide, values);
    (out16 ? store_outputs<16> : store_outputs<8>)(values, wide, outputs + channel * handle.channel_bytes);
  }
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

  preproc_stages stages;
  if (request.balance_steps) {
    const std::span<u8> steps = block.take<u8>(3 * sizeof(i16));
    stages.balance = block.section<u16>(3 * input_levels);
    for (u32 channel = 0; channel < 3; ++channel) {
      const i32 step = (*request.balance_steps)[channel];
      store_sample(&steps[channel * sizeof(i16)], i16(step));
      balance_curve(step, request.balance_unit, entries - 1,
                    stages.balance.subspan(input_levels * channel, input_levels));
    }
    handle.balance_steps = steps.data();
  }
  if (request.lift_step != 0) {
    handle.lift_step = keep_step(request.lift_step);
    stages.lift = block.section<u16>(entries);
    lift_curve(request.lift_step, stages.lift);
  }
  if (request.contrast_step != 0) {
    handle.contrast_step = keep_step(request.contrast_step);
    stages.contrast = block.section<u16>(entries);
    contrast_curve(request.contrast_exponent, stages.contrast);
  }
  if (request.use_curve) stages.curve = take_curves(request.curve, block.section<u16>(curve_image::entries));
  if (request.use_rgb_curves) {
    stages.rgb_curves = take_curves(request.rgb_curves, block.section<u16>(3 * curve_image::entries));
  }
  const bool composed = has(flags, VRK_COMPOSE);
  preproc_build_outputs(stages, composed ? block.section<u16>(3 * input_levels) : std::span<u16>{}, handle);

  // Room for a staging pixel belongs to the layout. Transforms keep theirs in registers.
  block.section<u8>(staging_bytes(flags));
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
