#include "vrk.h"

extern "C" {

const char* VRK_CALL vrk_get_version(void) { return "1.3.4.3"; }

}  // extern "C"
