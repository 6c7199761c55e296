#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_create_ed(uint32_t, uint32_t, const void*, uint32_t, const void*, uint32_t, void*) { return 0; }
uint32_t VRK_CALL vrk_query_ed_info(void*, vrk_ht_info*) { return 0; }
uint32_t VRK_CALL vrk_query_ed_hint(const void*) { return 0; }
void VRK_CALL vrk_query_ed_bitlen(const void*, uint8_t*) {}
uint32_t VRK_CALL vrk_start_ed_block(void*, uint32_t, uint32_t, uint32_t) { return 0; }
uint32_t VRK_CALL vrk_exec_ed(void*, const void*, uint8_t*, uint8_t*, uint8_t*, uint8_t*, uint8_t*, uint8_t*) {
  return 0;
}
uint32_t VRK_CALL vrk_exec_edx(void*, const void*, uint8_t* const*) { return 0; }
void VRK_CALL vrk_clear_ed_buf(void*) {}
void VRK_CALL vrk_end_ed_block(void*) {}
void VRK_CALL vrk_free_ed(void*) {}

}  // extern "C"
