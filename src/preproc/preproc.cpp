#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_preproc(const int16_t*, uint32_t, uint32_t, uint32_t, const void*, uint32_t, const void*,
                                     uint32_t, void*) {
  return 0;
}
uint32_t VRK_CALL vrk_query_preproc_hint(const void*) { return 0; }
uint32_t VRK_CALL vrk_xform_preproc(void*, const void*, const uint8_t*, uint32_t, void*) { return 0; }
void VRK_CALL vrk_set_preproc_rgb(void*, uint32_t) {}
void VRK_CALL vrk_free_preproc(void*) {}

uint32_t VRK_CALL vrk_create_preproc2(const int16_t*, uint32_t, uint32_t, const void*, uint32_t, const void*, uint32_t,
                                      void*) {
  return 0;
}
uint32_t VRK_CALL vrk_query_preproc2_hint(const void*) { return 0; }
uint32_t VRK_CALL vrk_xform_preproc2(void*, const void*, const uint8_t*, uint32_t, void*) { return 0; }
void VRK_CALL vrk_set_preproc2_rgb(void*, uint32_t) {}
void VRK_CALL vrk_free_preproc2(void*) {}

}  // extern "C"
