#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_postproc(uint32_t, uint32_t, const void*, uint32_t, const void*, uint32_t, const void*,
                                      uint32_t, const void*, uint32_t, const void*, uint32_t, const void*, uint32_t,
                                      const void*, uint32_t, void*) {
  return 0;
}
uint32_t VRK_CALL vrk_query_postproc_hint(const void*) { return 0; }
uint32_t VRK_CALL vrk_xform_postproc(void*, const void*, uint32_t, void*) { return 0; }
void VRK_CALL vrk_free_postproc(void*) {}

}  // extern "C"
