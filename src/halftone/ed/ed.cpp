// Making a handle, and what a handle says of itself.

#include "base/carver.h"
#include "base/flags.h"
#include "halftone/ed/ed_setup.h"
#include "vrk.h"

namespace {

using namespace vrk;

const ed_header& header_of(const void* handle) { return record_of<ed_handle>(handle).header; }

// Bits per pixel of the output, record order.
void plane_bits(const ed_header& header, u8* bits) {
  for (const u32 slot : table_slot) {
    *bits++ = header.extended ? u8(header.level_count[slot] != 0) : header.bits[slot];
  }
}

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_create_ed(uint32_t width, uint32_t spread_size, const void* spread_table, uint32_t param_size,
                                const void* param_table, uint32_t flags, void* mem) {
  const byte_view params(param_table, param_size), spread(spread_table, spread_size);
  ed_plan plan;
  if (!ed_check_tables(params, spread, width, ed_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return ed_build(plan, params, spread, block) ? u32(block.used()) : 0;
}

uint32_t VRK_CALL vrk_query_ed_hint(const void* handle) { return record_of<ed_handle>(handle).flags; }

void VRK_CALL vrk_query_ed_bitlen(const void* handle, uint8_t* bits) { plane_bits(header_of(handle), bits); }

uint32_t VRK_CALL vrk_query_ed_info(void* handle, vrk_ht_info* info) {
  const ed_handle& h = record_of<ed_handle>(handle);
  info->method = 1;
  info->plane_count = u8(h.planes);
  plane_bits(h.header, info->plane_bits);
  for (u32 r = 0; r < plane_slots; ++r) {
    const u32 slot = table_slot[r];
    info->line_bytes[r] = packed_bytes(u32(info->plane_bits[r]) * h.header.scale_x[slot], h.width);
    info->plane_scale[r] = {h.header.scale_x[slot], h.header.scale_y[slot]};
  }
  info->same_line_bytes = all_same(std::span<const u32>(info->line_bytes, h.planes));
  info->dot_expansion = h.header.extended;
  info->same_scale = h.same_scale;
  return 1;
}

void VRK_CALL vrk_free_ed(void*) {}

}  // extern "C"
