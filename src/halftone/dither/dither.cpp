#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_dither(uint32_t, uint32_t, const void*, uint32_t, void*) { return 0; }
uint32_t VRK_CALL vrk_query_dither_hint(const void*) { return 0; }
uint32_t VRK_CALL vrk_query_dither_info(const void*, vrk_ht_info*) { return 0; }
void VRK_CALL vrk_query_dither_bitlen(const void*, uint8_t*) {}
uint32_t VRK_CALL vrk_start_dither_block(void*, uint32_t, uint32_t, uint32_t) { return 0; }
uint32_t VRK_CALL vrk_exec_dither(void*, const void*, uint8_t*, uint8_t*, uint8_t*, uint8_t*, uint8_t*, uint8_t*) {
  return 0;
}
uint32_t VRK_CALL vrk_exec_ditherx(void*, const void*, uint8_t* const*) { return 0; }
void VRK_CALL vrk_end_dither_block(void*) {}
void VRK_CALL vrk_free_dither(void*) {}

}  // extern "C"
