/* A caller as Microsoft's compiler makes it, in C and in C++: it takes vrk.h as it is and reaches all exports through
 * vrk.lib, which only knows their decorated names. It needs no run-time library: Windows calls `start`. */
#include <stddef.h>
#include <vrk.h>

#ifdef __cplusplus
#define HOLDS(condition) static_assert(condition, #condition)
#define START extern "C"
#else
#define HOLDS(condition) _Static_assert(condition, #condition)
#define START
#endif

/* Records have the layout that the DLL was compiled with. */
HOLDS(sizeof(vrk_table_ref) == 8 && offsetof(vrk_table_ref, data) == 4);
HOLDS(sizeof(vrk_plane_scale) == 8 && offsetof(vrk_plane_scale, scale_y) == 4);
HOLDS(sizeof(vrk_ht_info) == 96 && offsetof(vrk_ht_info, plane_bits) == 5);
HOLDS(offsetof(vrk_ht_info, line_bytes) == 12 && offsetof(vrk_ht_info, plane_scale) == 44);

typedef void function(void);
static function* volatile every_export[] = {
#include "every_export.inc" /* a line for each line of vrk.def: (function*)vrk_get_version, */
};

START int start(void) {
  for (size_t i = 0; i < sizeof every_export / sizeof *every_export; ++i) {
    if (!every_export[i]) return 1;
  }
  return vrk_get_version()[0] == 0 || vrk_create_preproc(NULL, 0, 0, 0, NULL, 0, NULL, 0, NULL) != 100;
}
