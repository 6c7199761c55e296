#include "halftone/dither/dither_kernels.h"
#include "halftone/dither/dither_setup.h"
#include "vrk.h"

namespace {

using namespace vrk;

constexpr u32 ordered_dither_method = 2;  // of vrk_ht_info

const dither_plane& in_record_order(const dither_handle& handle, u32 r) { return handle.plane[table_slot[r]]; }

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_create_dither(uint32_t line_width, uint32_t table_size, const void* table, uint32_t flags,
                                    void* mem) {
  byte_view image(table, table_size);
  dither_plan plan;
  if (!dither_check_table(image, dither_adjust_flags(flags), plan)) return 0;
  const u64 size = dither_handle_size(plan);
  if (mem == nullptr) return size_or_0(size);
  carver block(mem, size);
  return dither_build(plan, line_width, image, block) ? u32(block.used()) : 0;
}

uint32_t VRK_CALL vrk_query_dither_hint(const void* handle) { return record_of<dither_handle>(handle).flags; }

uint32_t VRK_CALL vrk_query_dither_info(const void* handle, vrk_ht_info* info) {
  if (handle == nullptr || info == nullptr) return 0;
  const auto& h = record_of<dither_handle>(handle);
  *info = {};
  info->method = ordered_dither_method;
  info->plane_count = u8(h.plane_count);
  for (u32 r = 0; r < plane_slots; ++r) {
    const dither_plane& plane = in_record_order(h, r);
    const u32 scale = plane.level_count != 0 ? 1 : 0;
    info->plane_bits[r] = plane.bits;
    info->line_bytes[r] = packed_bytes(plane.bits, h.line_width);
    info->plane_scale[r] = {scale, scale};
  }
  info->same_line_bytes = all_same<u8>({info->plane_bits, h.plane_count});
  info->same_scale = 1;  // the planes that the count covers are present
  return 1;
}

void VRK_CALL vrk_query_dither_bitlen(const void* handle, uint8_t* bits) {
  const auto& h = record_of<dither_handle>(handle);
  for (u32 r = 0; r < plane_slots; ++r) bits[r] = in_record_order(h, r).bits;
}

uint32_t VRK_CALL vrk_start_dither_block(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line) {
  auto& h = record_of<dither_handle>(handle);
  h.block_width = block_width;
  h.block_x = block_x;
  h.line_counter = line;
  return block_fits(block_x, block_width, h.line_width);
}

uint32_t VRK_CALL vrk_exec_dither(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                                  uint8_t* out_y, uint8_t* out_5, uint8_t* out_6) {
  dither_line(record_of<dither_handle>(handle), static_cast<const u8*>(src),
              {out_k, out_c, out_m, out_y, out_5, out_6});
  return 1;
}

uint32_t VRK_CALL vrk_exec_ditherx(void* handle, const void* src, uint8_t* const* planes) {
  auto& h = record_of<dither_handle>(handle);
  dither_outputs out{};
  std::copy_n(planes, h.plane_count, out.begin());
  dither_line(h, static_cast<const u8*>(src), out);
  return 1;
}

void VRK_CALL vrk_end_dither_block(void*) {}

void VRK_CALL vrk_free_dither(void*) {}

}  // extern "C"
