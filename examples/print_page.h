/* One page as a printer driver prints it with the library. print_page_windows.c loads vrk.dll and finds the exports by
 * name; print_page_linux.c links the library. */
#ifndef PRINT_PAGE_H
#define PRINT_PAGE_H

#include <vrk.h>

/* The exports that the page uses, under their names without vrk_. */
typedef struct page_exports {
  const char*(VRK_CALL* get_version)(void);
  uint32_t(VRK_CALL* log_csc2)(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family, uint16_t kind,
                               uint16_t select_a, uint16_t select_b, uint16_t select_c, uint16_t select_d);
  uint32_t(VRK_CALL* log_htone)(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                uint32_t levels);
  uint32_t(VRK_CALL* create_csc2)(uint32_t table_size, const void* table, uint32_t input_samples, uint32_t flags,
                                  void* mem);
  void(VRK_CALL* set_csc2_rgb)(void* handle, uint32_t layout);
  uint32_t(VRK_CALL* xform_csc2)(void* handle, const void* src, uint32_t pixel_count, void* dst);
  uint32_t(VRK_CALL* create_ed)(uint32_t width, uint32_t spread_size, const void* spread_table, uint32_t param_size,
                                const void* param_table, uint32_t flags, void* mem);
  uint32_t(VRK_CALL* query_ed_info)(void* handle, vrk_ht_info* info);
  uint32_t(VRK_CALL* start_ed_block)(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line);
  uint32_t(VRK_CALL* exec_ed)(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                              uint8_t* out_y, uint8_t* out_5, uint8_t* out_6);
  void(VRK_CALL* end_ed_block)(void* handle);
} page_exports;

/* Prints the page with the driver's parameters, ink.blob, halftone.blob and spread.edtb of the current folder, to
 * k.pbm, c.pbm, m.pbm and y.pbm there. Prints a message and ends the program when something fails. */
void print_page(const page_exports* vrk);

#endif
