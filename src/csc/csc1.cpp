#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_csc1(uint32_t, const void*, uint32_t, void*) { return 0; }
uint32_t VRK_CALL vrk_query_csc1_hint(const void*) { return 0; }
void VRK_CALL vrk_set_csc1_rgb(void*, uint32_t) {}
uint32_t VRK_CALL vrk_xform_csc1(void*, const void*, const uint8_t*, uint32_t, void*) { return 0; }
void VRK_CALL vrk_free_csc1(void*) {}

}  // extern "C"
