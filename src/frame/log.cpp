#include "vrk.h"

extern "C" {

uint32_t VRK_CALL vrk_log_csc1(uint32_t, const void*, vrk_table_ref*, uint16_t, uint16_t, uint16_t, uint16_t, uint16_t,
                               uint16_t) {
  return 0;
}
uint32_t VRK_CALL vrk_log_csc2(uint32_t, const void*, vrk_table_ref*, uint16_t, uint16_t, uint16_t, uint16_t, uint16_t,
                               uint16_t) {
  return 0;
}
uint32_t VRK_CALL vrk_log_htone(uint32_t, const void*, vrk_table_ref*, uint16_t, uint32_t) { return 0; }
uint32_t VRK_CALL vrk_log_ingamma(uint32_t, const void*, vrk_table_ref*, uint16_t, int16_t) { return 0; }
uint32_t VRK_CALL vrk_log_ingamma2(uint32_t, const void*, vrk_table_ref*, uint16_t, int16_t) { return 0; }
uint32_t VRK_CALL vrk_log_outgamma(uint32_t, const void*, vrk_table_ref*, uint16_t) { return 0; }
uint32_t VRK_CALL vrk_log_rank(uint32_t, const void*, vrk_table_ref*, uint16_t, int16_t, int16_t) { return 0; }

}  // extern "C"
