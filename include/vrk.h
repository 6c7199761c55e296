/* vrk: the colour library of a raster printer driver. */
#ifndef VRK_H
#define VRK_H

#include <stdint.h>

#if defined(_WIN32) && !defined(_WIN64)
#define VRK_CALL __stdcall
#elif defined(__i386__)
#define VRK_CALL __attribute__((stdcall))
#else
#define VRK_CALL
#endif

#if defined(__GNUC__) && !defined(_WIN32)
#define VRK_API __attribute__((visibility("default")))
#else
#define VRK_API
#endif

/* Bits of the flags word that every create function takes. */
#define VRK_IN16 0x001u    /* input samples are 16-bit words */
#define VRK_OUT16 0x004u   /* output samples are 16-bit words */
#define VRK_MID10 0x010u   /* pre- and post-processing: 10-bit intermediate values */
#define VRK_PREC12 0x010u  /* converters: 12-bit working precision */
#define VRK_PREC10 0x010u  /* error diffusion: 10-bit working precision */
#define VRK_COMPOSE 0x020u /* pre- and post-processing: one combined table per plane */
#define VRK_INVERT 0x040u  /* first converter, "gray" and "blck": full scale minus the value */
#define VRK_RANDOM4 0x080u /* error diffusion: random variants of 4-bit codes */
#define VRK_K_CODE3 0x100u /* halftoning: three-level codes of a three-level K plane */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct vrk_table_ref {
  uint32_t length;
  uint8_t* data;
} vrk_table_ref;

typedef struct vrk_plane_scale {
  uint32_t scale_x, scale_y;
} vrk_plane_scale;

typedef struct vrk_ht_info {
  uint32_t method;
  uint8_t plane_count;
  uint8_t plane_bits[6];
  uint32_t line_bytes[6];
  uint32_t same_line_bytes;
  uint32_t dot_expansion;
  vrk_plane_scale plane_scale[6];
  uint32_t same_scale;
} vrk_ht_info;

/* frame */
VRK_API const char* VRK_CALL vrk_get_version(void);
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_8(uint32_t pixel_count, uint8_t* pixels);
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_16(uint32_t pixel_count, void* pixels);

/* look-up */
VRK_API uint32_t VRK_CALL vrk_log_csc1(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                       uint16_t kind, uint16_t select_a, uint16_t select_b, uint16_t select_c,
                                       uint16_t select_d);
VRK_API uint32_t VRK_CALL vrk_log_csc2(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                       uint16_t kind, uint16_t select_a, uint16_t select_b, uint16_t select_c,
                                       uint16_t select_d);
VRK_API uint32_t VRK_CALL vrk_log_htone(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                        uint32_t levels);
VRK_API uint32_t VRK_CALL vrk_log_ingamma(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                          int16_t step);
VRK_API uint32_t VRK_CALL vrk_log_ingamma2(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                           int16_t step);
VRK_API uint32_t VRK_CALL vrk_log_outgamma(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family);
VRK_API uint32_t VRK_CALL vrk_log_rank(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                       int16_t step, int16_t ink);

/* preproc */
VRK_API uint32_t VRK_CALL vrk_create_preproc(const int16_t* balance, uint32_t lift, uint32_t contrast,
                                             uint32_t use_curve, const void* curve, uint32_t use_rgb_curves,
                                             const void* rgb_curves, uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_preproc_hint(const void* handle);
VRK_API uint32_t VRK_CALL vrk_xform_preproc(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count,
                                            void* dst);
VRK_API void VRK_CALL vrk_set_preproc_rgb(void* handle, uint32_t layout);
VRK_API void VRK_CALL vrk_free_preproc(void* handle);

/* preproc2 */
VRK_API uint32_t VRK_CALL vrk_create_preproc2(const int16_t* balance, uint32_t contrast, uint32_t use_curve,
                                              const void* curve, uint32_t use_rgb_curves, const void* rgb_curves,
                                              uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_preproc2_hint(const void* handle);
VRK_API uint32_t VRK_CALL vrk_xform_preproc2(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count,
                                             void* dst);
VRK_API void VRK_CALL vrk_set_preproc2_rgb(void* handle, uint32_t layout);
VRK_API void VRK_CALL vrk_free_preproc2(void* handle);

/* csc1 */
VRK_API uint32_t VRK_CALL vrk_create_csc1(uint32_t table_size, const void* table, uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_csc1_hint(const void* handle);
VRK_API void VRK_CALL vrk_set_csc1_rgb(void* handle, uint32_t layout);
VRK_API uint32_t VRK_CALL vrk_xform_csc1(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count,
                                         void* dst);
VRK_API void VRK_CALL vrk_free_csc1(void* handle);

/* csc2 */
VRK_API uint32_t VRK_CALL vrk_create_csc2(uint32_t table_size, const void* table, uint32_t input_samples,
                                          uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_csc2_hint(const void* handle);
VRK_API void VRK_CALL vrk_set_csc2_rgb(void* handle, uint32_t layout);
VRK_API uint32_t VRK_CALL vrk_xform_csc2(void* handle, const void* src, uint32_t pixel_count, void* dst);
VRK_API void VRK_CALL vrk_free_csc2(void* handle);

/* postproc */
VRK_API uint32_t VRK_CALL vrk_create_postproc(uint32_t planes, uint32_t main_on, const void* main_table, uint32_t k_on,
                                              const void* k_table, uint32_t c_on, const void* c_table, uint32_t m_on,
                                              const void* m_table, uint32_t y_on, const void* y_table,
                                              uint32_t fifth_on, const void* fifth_table, uint32_t sixth_on,
                                              const void* sixth_table, uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_postproc_hint(const void* handle);
VRK_API uint32_t VRK_CALL vrk_xform_postproc(void* handle, const void* src, uint32_t pixel_count, void* dst);
VRK_API void VRK_CALL vrk_free_postproc(void* handle);

/* ed */
VRK_API uint32_t VRK_CALL vrk_create_ed(uint32_t width, uint32_t spread_size, const void* spread_table,
                                        uint32_t param_size, const void* param_table, uint32_t flags, void* mem);
VRK_API uint32_t VRK_CALL vrk_query_ed_info(void* handle, vrk_ht_info* info);
VRK_API uint32_t VRK_CALL vrk_query_ed_hint(const void* handle);
VRK_API void VRK_CALL vrk_query_ed_bitlen(const void* handle, uint8_t* bits);
VRK_API uint32_t VRK_CALL vrk_start_ed_block(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line);
VRK_API uint32_t VRK_CALL vrk_exec_ed(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                                      uint8_t* out_y, uint8_t* out_5, uint8_t* out_6);
VRK_API uint32_t VRK_CALL vrk_exec_edx(void* handle, const void* src, uint8_t* const* planes);
VRK_API void VRK_CALL vrk_clear_ed_buf(void* handle);
VRK_API void VRK_CALL vrk_end_ed_block(void* handle);
VRK_API void VRK_CALL vrk_free_ed(void* handle);

/* dither */
VRK_API uint32_t VRK_CALL vrk_create_dither(uint32_t line_width, uint32_t table_size, const void* table, uint32_t flags,
                                            void* mem);
VRK_API uint32_t VRK_CALL vrk_query_dither_hint(const void* handle);
VRK_API uint32_t VRK_CALL vrk_query_dither_info(const void* handle, vrk_ht_info* info);
VRK_API void VRK_CALL vrk_query_dither_bitlen(const void* handle, uint8_t* bits);
VRK_API uint32_t VRK_CALL vrk_start_dither_block(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line);
VRK_API uint32_t VRK_CALL vrk_exec_dither(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                                          uint8_t* out_y, uint8_t* out_5, uint8_t* out_6);
VRK_API uint32_t VRK_CALL vrk_exec_ditherx(void* handle, const void* src, uint8_t* const* planes);
VRK_API void VRK_CALL vrk_end_dither_block(void* handle);
VRK_API void VRK_CALL vrk_free_dither(void* handle);

#ifdef __cplusplus
}
#endif

#endif /* VRK_H */
