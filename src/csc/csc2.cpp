#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_csc2(uint32_t, const void*, uint32_t, uint32_t, void*) { return 0; }
uint32_t VRK_CALL vrk_query_csc2_hint(const void*) { return 0; }
void VRK_CALL vrk_set_csc2_rgb(void*, uint32_t) {}
uint32_t VRK_CALL vrk_xform_csc2(void*, const void*, uint32_t, void*) { return 0; }
void VRK_CALL vrk_free_csc2(void*) {}

}  // extern "C"
