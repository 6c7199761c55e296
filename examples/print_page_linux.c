/* print_page with libvrk linked. */
#include "print_page.h"

int main(void) {
  const page_exports vrk = {
      vrk_get_version, vrk_log_csc2,      vrk_log_htone,      vrk_create_csc2, vrk_set_csc2_rgb, vrk_xform_csc2,
      vrk_create_ed,   vrk_query_ed_info, vrk_start_ed_block, vrk_exec_ed,     vrk_end_ed_block,
  };
  print_page(&vrk);
  return 0;
}
