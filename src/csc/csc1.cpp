#include "base/carver.h"

#include "csc/csc1_kernels.h"
#include "csc/csc1_setup.h"
#include "vrk.h"

using namespace vrk;

extern "C" {

uint32_t VRK_CALL vrk_create_csc1(uint32_t table_size, const void* table, uint32_t flags, void* mem) {
  byte_view image(table, table_size);
  csc1_plan plan;
  if (!csc1_check(image, csc_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return csc1_build(plan, image, block) ? plan.size : 0;
}

uint32_t VRK_CALL vrk_query_csc1_hint(const void* handle) { return record_of<csc1_handle>(handle).flags; }

void VRK_CALL vrk_set_csc1_rgb(void* handle, uint32_t layout) { record_of<csc1_handle>(handle).layout = layout; }

uint32_t VRK_CALL vrk_xform_csc1(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count, void* dst) {
  const csc1_handle& h = record_of<csc1_handle>(handle);
  csc1_convert(h, static_cast<const u8*>(src), mask, pixel_count, static_cast<u8*>(dst));
  return 1;
}

void VRK_CALL vrk_free_csc1(void*) {}

}  // extern "C"
