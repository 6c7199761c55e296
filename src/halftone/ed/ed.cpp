// The exports of error diffusion.
#include "base/carver.h"
#include "halftone/ed/codes.h"
#include "halftone/ed/ed_kernels.h"
#include "halftone/ed/ed_setup.h"
#include "halftone/ed/ed_widths.h"
#include "halftone/ed/error_lines.h"
#include "halftone/ed/expand.h"
#include "vrk.h"

namespace {

using namespace vrk;

constexpr u32 error_diffusion_method = 1;  // of vrk_ht_info

// Bits per pixel of the output, record order.
void plane_bits(const ed_header& header, u8* bits) {
  for (const u32 slot : table_slot) {
    *bits++ = header.extended ? u8(header.level_count[slot] != 0) : header.bits[slot];
  }
}

uint32_t halftone_line(ed_handle& h, const void* src, u8* const* out) {
  const ed_row& row = ed_rows()[h.kernel];
  (h.line_counter % 2 == 0 ? row.even : row.odd)(h, static_cast<const u8*>(src));
  h.header.extended ? expand_planes(h, out) : pack_planes(h, out);
  ++h.line_counter;
  return 1;
}

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_create_ed(uint32_t width, uint32_t spread_size, const void* spread_table, uint32_t param_size,
                                const void* param_table, uint32_t flags, void* mem) {
  const byte_view params(param_table, param_size), distribution(spread_table, spread_size);
  ed_plan plan;
  if (!ed_check_tables(params, distribution, width, ed_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return ed_build(plan, params, distribution, block) ? u32(block.used()) : 0;
}

uint32_t VRK_CALL vrk_query_ed_hint(const void* handle) { return record_of<ed_handle>(handle).flags; }

uint32_t VRK_CALL vrk_query_ed_info(void* handle, vrk_ht_info* info) {
  const ed_handle& h = record_of<ed_handle>(handle);
  info->method = error_diffusion_method;
  info->plane_count = u8(std::max(h.planes, 1u));  // K, even where it is not in use
  plane_bits(h.header, info->plane_bits);
  for (u32 r = 0; r < plane_slots; ++r) {
    const u32 slot = table_slot[r];
    info->line_bytes[r] = packed_bytes(u32(info->plane_bits[r]) * h.header.scale_x[slot], h.width);
    info->plane_scale[r] = {h.header.scale_x[slot], h.header.scale_y[slot]};
  }
  info->same_line_bytes = all_same<u32>({info->line_bytes, h.planes});
  info->dot_expansion = h.header.extended;
  info->same_scale = h.same_scale;
  return 1;
}

void VRK_CALL vrk_query_ed_bitlen(const void* handle, uint8_t* bits) {
  plane_bits(record_of<ed_handle>(handle).header, bits);
}

uint32_t VRK_CALL vrk_start_ed_block(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line) {
  auto& h = record_of<ed_handle>(handle);
  if (!block_fits(block_x, block_width, h.width)) return 0;
  if (line == h.line_counter) {
    keep_errors_of_block(h, block_x, block_width);
  } else {
    forget_errors(h);
  }
  h.line_counter = line;
  h.block_x = block_x;
  h.block_width = block_width;
  return 1;
}

uint32_t VRK_CALL vrk_exec_ed(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                              uint8_t* out_y, uint8_t* out_5, uint8_t* out_6) {
  auto& h = record_of<ed_handle>(handle);
  if (h.header.extended) return 0;
  u8* const out[plane_slots] = {out_k, out_c, out_m, out_y, out_5, out_6};
  return halftone_line(h, src, out);
}

uint32_t VRK_CALL vrk_exec_edx(void* handle, const void* src, uint8_t* const* planes) {
  return halftone_line(record_of<ed_handle>(handle), src, planes);
}

void VRK_CALL vrk_end_ed_block(void* handle) {
  auto& h = record_of<ed_handle>(handle);
  keep_errors_of_block(h, h.block_x, h.block_width);
}

void VRK_CALL vrk_clear_ed_buf(void* handle) { forget_errors(record_of<ed_handle>(handle)); }

void VRK_CALL vrk_free_ed(void*) {}

}  // extern "C"
