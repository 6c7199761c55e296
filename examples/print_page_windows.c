/* print_page with vrk.dll loaded at run time, as a driver does. */
#include <stdio.h>
#include <windows.h>

#include "print_page.h"

int main(void) {
  page_exports vrk;
  const struct {
    const char* name;
    void* pointer;
  } wanted[] = {
      {"vrk_get_version", &vrk.get_version},       {"vrk_log_csc2", &vrk.log_csc2},
      {"vrk_log_htone", &vrk.log_htone},           {"vrk_create_csc2", &vrk.create_csc2},
      {"vrk_set_csc2_rgb", &vrk.set_csc2_rgb},     {"vrk_xform_csc2", &vrk.xform_csc2},
      {"vrk_create_ed", &vrk.create_ed},           {"vrk_query_ed_info", &vrk.query_ed_info},
      {"vrk_start_ed_block", &vrk.start_ed_block}, {"vrk_exec_ed", &vrk.exec_ed},
      {"vrk_end_ed_block", &vrk.end_ed_block},
  };
  const HMODULE dll = LoadLibraryA("vrk.dll");
  if (dll == NULL) {
    fprintf(stderr, "print_page: vrk.dll does not load\n");
    return 1;
  }
  for (size_t i = 0; i < sizeof wanted / sizeof *wanted; ++i) {
    *(FARPROC*)wanted[i].pointer = GetProcAddress(dll, wanted[i].name); /* undecorated, see vrk.def */
    if (*(FARPROC*)wanted[i].pointer == NULL) {
      fprintf(stderr, "print_page: vrk.dll has no %s\n", wanted[i].name);
      return 1;
    }
  }
  print_page(&vrk);
  FreeLibrary(dll);
  return 0;
}
