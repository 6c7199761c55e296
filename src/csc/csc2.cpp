#include "base/carver.h"

#include "csc/csc2_kernels.h"
#include "csc/csc2_setup.h"
#include "vrk.h"

using namespace vrk;

extern "C" {

uint32_t VRK_CALL vrk_create_csc2(uint32_t table_size, const void* table, uint32_t input_samples, uint32_t flags,
                                  void* mem) {
  byte_view image(table, table_size);
  csc2_plan plan;
  if (!csc2_check(image, u8(input_samples), csc_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return csc2_build(plan, image, block) ? plan.size : 0;
}

uint32_t VRK_CALL vrk_query_csc2_hint(const void* handle) { return record_of<csc2_handle>(handle).flags; }

void VRK_CALL vrk_set_csc2_rgb(void* handle, uint32_t layout) { record_of<csc2_handle>(handle).layout = layout; }

uint32_t VRK_CALL vrk_xform_csc2(void* handle, const void* src, uint32_t pixel_count, void* dst) {
  const csc2_handle& h = record_of<csc2_handle>(handle);
  csc2_convert(h, static_cast<const u8*>(src), pixel_count, static_cast<u8*>(dst));
  return 1;
}

void VRK_CALL vrk_free_csc2(void*) {}

}  // extern "C"
