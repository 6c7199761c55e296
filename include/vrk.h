/* vrk: the colour library of a raster printer driver.
 *
 * It turns scanlines of an application's image (8- or 16-bit RGB, or one gray sample a pixel) into a printer's ink
 * planes and halftones every plane into packed lines of 1, 2, 4 or 8 bits a pixel, or into cells of single dots. It is
 * pure computation on the caller's memory: it allocates nothing, reads and writes no file, starts no thread, takes no
 * lock.
 *
 * STAGES, in pipeline order; a driver runs those that its settings need, each reading the output of the one before:
 *
 *   preproc, preproc2   8-bit RGB -> adjusted RGB, 8 or 16 bits       balance, lift, contrast, tone curves
 *   csc1                RGB -> three samples, or one gray or black    3-D colour table "csc1", or a fixed rule
 *   csc2                RGB or gray -> 4 or 6 ink planes              3-D colour table "csc2", or a curve "1dlt"
 *   postproc            ink planes -> ink planes                      curves a plane, width change, split of 4 into 6
 *   ed, dither          ink planes -> packed lines or dot cells       error diffusion; ordered dither
 *   log                 finds the tables in the driver's parameter blobs
 *
 * TABLES are big-endian byte images that the caller passes; they are read only during the create call.
 *
 * ONE PROTOCOL for the seven create functions. Call once with `mem` null: the result is the size of the handle in
 * bytes. Allocate that much, aligned to 4 bytes, and call again with the same arguments and `mem`: the library builds
 * the handle there and returns the bytes used (not more than the size; the two converters return the size). 0 from
 * either call means failure, and then `mem` is no handle. The address of `mem` is the handle. It holds distances into
 * itself: never move or copy it. The caller owns it and releases it after the last use; the free functions do nothing
 * and exist so that all stages look alike. Sizes are the same on every build of the library.
 *
 * The size call writes nothing. A build call that is refused for its arguments or a table's header, or whose `mem` is
 * misaligned, writes nothing either; one that is refused for a table's body may have written inside `mem`. Nothing is
 * ever read outside a table's announced size or written outside the reported size. Where a table comes without a size
 * (the curve images of preproc and postproc), it must hold all that its header announces.
 * A null table pointer whose switch is on, or where a table is required, gives 0. A null handle must not be passed,
 * except where said.
 *
 * FLAGS. Every create function takes a flags word and keeps it, adjusted as told there; its query_..._hint function
 * returns the kept word. Bits without a meaning for a stage are kept and have no effect.
 *
 * SAMPLES are bytes (0 ... 255) or 16-bit words in the machine's byte order (0 ... 65535), interleaved per pixel
 * without padding. 16-bit samples may lie at odd addresses. 255, 1023 (10 bits), 4095 (12 bits) and 65535 are the same
 * full scale. Ink planes stand in the order K, C, M, Y, fifth, sixth in all pixels, outputs and records; the fifth
 * accompanies cyan, the sixth magenta. RGB pixels have one of four layouts (set by the set_..._rgb functions, 0 after
 * creation):
 *     0: R, G, B    1: B, G, R    2: B, G, R, pad    3: pad, R, G, B
 * `src` and `dst` of a transform may be the very same buffer when an output pixel is as long in bytes as an input
 * pixel; any other overlap is the caller's error. With a pixel_count of 0 no pointer is followed.
 *
 * MASKS (preproc, csc1) hold one bit a pixel, pixel p in bit 7 - p % 8 of byte p / 8; a set bit makes the output pixel
 * 0.
 *
 * THREADS. Handles share nothing, and look-up and create functions keep no state, so different threads may use them at
 * once. Transforms of preproc, preproc2, csc1, csc2 and postproc only read their handle: one handle may serve several
 * threads, as long as no set_..._rgb call runs beside them. Halftoning handles keep error lines and line counters: one
 * thread at a time. The only state outside handles is a pseudo-random generator per thread (see VRK_RANDOM4).
 *
 * EXAMPLE: one page from RGB to four 1-bit planes.
 *
 *   uint32_t csc_size = vrk_create_csc2(grid_size, grid, 3, 0, NULL);
 *   uint32_t ed_size = vrk_create_ed(width, edtb_size, edtb, edpr_size, edpr, 0, NULL);
 *   void *csc = malloc(csc_size), *ed = malloc(ed_size);          // both sizes non-zero, both pointers non-null
 *   if (!vrk_create_csc2(grid_size, grid, 3, 0, csc)) fail();
 *   if (!vrk_create_ed(width, edtb_size, edtb, edpr_size, edpr, 0, ed)) fail();
 *   vrk_ht_info info;
 *   vrk_query_ed_info(ed, &info);                                 // info.line_bytes[i]: bytes of one line of plane i
 *   vrk_start_ed_block(ed, width, 0, 0);
 *   for (uint32_t y = 0; y < height; ++y) {
 *     vrk_xform_csc2(csc, rgb + 3 * width * y, width, inks);      // inks: 4 * width bytes
 *     vrk_exec_ed(ed, inks, k, c, m, yellow, NULL, NULL);         // k, c, m, yellow: packed lines, ready to send
 *   }
 *   vrk_end_ed_block(ed);
 */
#ifndef VRK_H
#define VRK_H

#include <stdint.h>

/* 32-bit builds pass arguments on the stack and the callee removes them; export names are undecorated. */
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

/* Bits of the flags words. */
#define VRK_IN16 0x001u    /* input samples are 16-bit words, else bytes */
#define VRK_OUT16 0x004u   /* output samples are 16-bit words, else bytes */
#define VRK_MID10 0x010u   /* preproc, preproc2, postproc: 10-bit intermediate values */
#define VRK_PREC12 0x010u  /* csc1, csc2: 12-bit working precision, else 8-bit; set by IN16 and by OUT16 */
#define VRK_PREC10 0x010u  /* ed: 10-bit working precision, else 8-bit; set by IN16. dither: always set */
#define VRK_COMPOSE 0x020u /* preproc, preproc2, postproc: one combined table a channel instead of a table a step */
#define VRK_INVERT 0x040u  /* csc1 "gray", "blck": full scale minus the value */
#define VRK_RANDOM4 0x080u /* ed, 4-bit planes of 5 or 6 levels: random choice among the codes that stand for a level */
#define VRK_K_CODE3 0x100u /* halftoning: three-level codes for a K plane of three levels (see exec_ed, exec_dither) */

#ifdef __cplusplus
extern "C" {
#endif

/* What a look-up found. */
typedef struct vrk_table_ref {
  uint32_t length; /* out: length of the table in bytes; 0 after a look-up that found none */
  uint8_t *data;   /* in: where to copy the table, or null to learn the length; owned by the caller */
} vrk_table_ref;

/* Dots across and output lines that one input pixel becomes: what an extended "edpr" table says; of any other table (1,
 * 1), or (0, 0) for a plane that it does not use. */
typedef struct vrk_plane_scale {
  uint32_t scale_x, scale_y;
} vrk_plane_scale;

/* What a halftoning handle produces. Owned by the caller; planes in the order K, C, M, Y, fifth, sixth. */
typedef struct vrk_ht_info {
  uint32_t method;                /* 1: error diffusion, 2: ordered dither */
  uint8_t plane_count;            /* 1 (K), 4 (K, C, M, Y) or 6 */
  uint8_t plane_bits[6];          /* bits per output pixel; dot cells: 1 */
  uint32_t line_bytes[6];         /* bytes of one packed line over the full line width given at creation */
  uint32_t same_line_bytes;       /* 1: the produced planes have lines of one length */
  uint32_t dot_expansion;         /* 1: pixels become cells of single dots (extended "edpr" table) */
  vrk_plane_scale plane_scale[6]; /* dots across and lines per input line */
  uint32_t same_scale;            /* 1: the produced planes have the same scale */
} vrk_ht_info;

/* ---- Frame ------------------------------------------------------------------------------------------------------- */

/* The library's version as a zero-terminated text that lives as long as the library is loaded. Not to be written to. */
VRK_API const char *VRK_CALL vrk_get_version(void);

/* Reorders pixels held as C, M, Y, K into K, C, M, Y, in place: four samples a pixel, bytes or 16-bit words.
 * Touches just the samples of `pixel_count` pixels. */
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_8(uint32_t pixel_count, uint8_t *pixels);
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_16(uint32_t pixel_count, void *pixels);

/* ---- Look-up of tables in parameter blobs ------------------------------------------------------------------------ */

/* A parameter blob holds variants of one kind of table under four-character tags. All numbers are big-endian.
 *
 *    0  4  magic "CTSI"
 *    4  4  blob type, told for each function
 *    8  4  version, compared as a big-endian number
 *   24  1  class
 *   31  1  end of header, 0x1A
 *   32  2  entry count, at least 1
 *   40     entries of 12 bytes: tag (blanks where unused), offset of the table in the blob, its length
 *
 * The first entry of a tag wins. The tables themselves are not looked into. Call with ref->data null to learn
 * ref->length, then with ref->data pointing to that much memory to have the table copied.
 *
 * blob_size, blob  the blob; nothing is read outside it
 * family           0 or 1: the first character of every tag, "H" or "X" (told below for H)
 *
 * Returns 1 when the table was found, else 0, and then nothing is copied: null blob or ref, blob_size 0, a family or
 * selector out of range (ref->length stays as it was; the csc look-ups clear it before they look at kind), or a blob of
 * another type, above the maximum version, without its end mark, with an empty or truncated directory, without the tag,
 * or whose entry leaves the blob (ref->length is then 0).
 * Threads: any number at once, on the same blob too. */

/* First and second converter's tables; blob types "CS1T" and "CS2T", versions to "001z". kind 0 ... 6 chooses a rule,
 * the selectors a, b, c, d refine it. Below, F is the family letter; class C means a blob of class 'C'; T|U means T if
 * the blob has it, else U. Selectors are compared as whole words, except d of vrk_log_csc2: its low byte.
 *
 *   vrk_log_csc1
 *   kind 0     class C and b = 1: "FT  "
 *              else a = 1: "FP  ", 2: "FS  ", 3: "FC  "; with c = 1 "FPP "|"FP  ", "FSP "|"FS  ", "FCP "|"FC  ";
 *              another a finds nothing
 *   kind 1     "FT  "
 *   kind 2, 3  class C or d not 0: "FT  "; else "FC  "
 *   kind 4     H: "HG  ".   X: class C "XT  "; else "XP  ", with c = 1 "XPP "|"XP  "
 *   kind 5     H: "HBK ".   X: class C "XT  "; else "XS  "
 *   kind 6     H: "HSC ".   X: as kind 5
 *
 *   vrk_log_csc2
 *   kind 0     class C and a not 0: as a = 1, 2, 3 of vrk_log_csc1, with b in the place of c
 *              else "FN  ", with b = 1 "FNP "|"FN  "
 *   kind 1     class C and b = 1: "FNP "|"FN  "; else "FN  "
 *   kind 2, 3  class C and c = 0: "FC  "; else "FN  "
 *   kind 4     H: not class C, b = 1 and the blob has "HNP ": "HPP "|"HNP "; else "HPG " if d = 1, else "HP  "
 *              X: class C: "XPG " if d = 1, else "XP  "; not class C: b = 1 and the blob has "XNP ": "XNP ";
 *              else "XNG " if d = 1, else "XN  "
 *   kind 5     H, or X of class C: "FPG " if d = 1, else "FS  "; else "XNG " if d = 1, else "XN  "
 *   kind 6     H, or X of class C: "FS  "; else "XN  " */
VRK_API uint32_t VRK_CALL vrk_log_csc1(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                       uint16_t kind, uint16_t select_a, uint16_t select_b, uint16_t select_c,
                                       uint16_t select_d);
VRK_API uint32_t VRK_CALL vrk_log_csc2(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                       uint16_t kind, uint16_t select_a, uint16_t select_b, uint16_t select_c,
                                       uint16_t select_d);

/* Halftone tables; blob type "HATT". levels: low byte 1, 4 or 6. Tags "HH1 ", "HH4 ", "HH6 ". */
VRK_API uint32_t VRK_CALL vrk_log_htone(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                        uint32_t levels);

/* Input tone curves; blob type "INGM", version to "001z". step -2 ... 2: "HD2 ", "HD1 ", "HT  ", "HB1 ", "HB2 ". */
VRK_API uint32_t VRK_CALL vrk_log_ingamma(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                          int16_t step);

/* The same from blobs of a version up to "002z". step -5 ... 5: tags "HB-5" ... "HB00" ... "HB+5". */
VRK_API uint32_t VRK_CALL vrk_log_ingamma2(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                           int16_t step);

/* Output tone curves; blob type "OTGM". Tag "HN  ". */
VRK_API uint32_t VRK_CALL vrk_log_outgamma(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family);

/* Rank tables; blob type "HRKT". step -9 ... 9 as sign and digit, ink 0 ... 5 for K, C, M, Y, D, N: "HK+2", or "HR+2",
 * which serves all inks, where the blob has no such entry. Ink is checked after the header: out of range it gives
 * length 0. */
VRK_API uint32_t VRK_CALL vrk_log_rank(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                       int16_t step, int16_t ink);

/* ---- Pre-processing: 8-bit RGB, adjusted before conversion ------------------------------------------------------- */

/* Builds a pre-processor: balance, lift, contrast, RGB curves, then one curve, each only if asked for.
 *
 * balance         null for none, else the steps of R, G, B: a step of n lifts the middle of the channel by n * 5 / 255
 *                 off the diagonal
 * lift, contrast  low byte, signed; 0 for none. A lift of n raises a level by about n * 5 % of itself, fading out at
 *                 white; contrast is a power of n / 5 + 1 about the middle (below -5: as -5)
 * use_curve       non-zero: `curve` is a curve image with one curve, applied to all three channels
 * use_rgb_curves  non-zero: `rgb_curves` is a curve image with three curves, R, G, B
 * flags           VRK_OUT16: 16-bit output. VRK_MID10: 10-bit tables with 8-bit output. VRK_COMPOSE: one combined
 *                 10-bit table a channel, the fastest form. VRK_IN16 is not supported here and is cleared.
 *
 * Curve image, used by several stages:
 *    0  4  magic "1dlt"
 *    4  4  version, compared as a big-endian number; at most "001z" here
 *    8  1  curve count
 *    9  1  output count (postproc only)
 *   10  2  entry count, 1024
 *   12     curves of 1024 16-bit entries: entry j is the output level, 0 ... 65535, of the 10-bit input level j; 8-bit
 *          levels are widened by repeating their top bits
 *
 * Returns the size, or the bytes used (at most the size; the gaps depend on the address of `mem`). Size: 65 + 35 (39
 * with OUT16) + balance 1573 + lift and contrast 544 each (2080 with OUT16, MID10 or COMPOSE) + curve 2079 + RGB curves
 * 6175 + COMPOSE 1567.
 * Returns 0 for a curve image of another magic, version, curve count or entry count (in the size call, which is where
 * images are examined), for a null image that is asked for, and for a misaligned `mem`. */
VRK_API uint32_t VRK_CALL vrk_create_preproc(const int16_t *balance, uint32_t lift, uint32_t contrast,
                                             uint32_t use_curve, const void *curve, uint32_t use_rgb_curves,
                                             const void *rgb_curves, uint32_t flags, void *mem);

/* Flags as kept: VRK_IN16 cleared. */
VRK_API uint32_t VRK_CALL vrk_query_preproc_hint(const void *handle);

/* Adjusts a scanline. src: `pixel_count` pixels of the handle's layout, bytes. mask: see MASKS, or null for none. dst:
 * as many pixels of the same layout, bytes or (VRK_OUT16) 16-bit words; the pad sample is written as 0.
 * Returns 1, or 0 without writing anything for a layout above 3. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_preproc(void *handle, const void *src, const uint8_t *mask, uint32_t pixel_count,
                                            void *dst);

/* Pixel layout of input and output; its low byte counts. Any value is kept; transforms refuse those above 3. */
VRK_API void VRK_CALL vrk_set_preproc_rgb(void *handle, uint32_t layout);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_preproc(void *handle);

/* As vrk_create_preproc, but: balance points to two control values -5 ... 5 (clamped), a raising R and lowering G and
 * B, b moving B against G, half as far per step; there is no lift; the contrast power is 1 + 0.4 n, or 1 / (1 + 0.4
 * |n|) for negative steps. Size: 57 instead of 65, no lift term. */
VRK_API uint32_t VRK_CALL vrk_create_preproc2(const int16_t *balance, uint32_t contrast, uint32_t use_curve,
                                              const void *curve, uint32_t use_rgb_curves, const void *rgb_curves,
                                              uint32_t flags, void *mem);

/* As their sisters above. */
VRK_API uint32_t VRK_CALL vrk_query_preproc2_hint(const void *handle);
VRK_API uint32_t VRK_CALL vrk_xform_preproc2(void *handle, const void *src, const uint8_t *mask, uint32_t pixel_count,
                                             void *dst);
VRK_API void VRK_CALL vrk_set_preproc2_rgb(void *handle, uint32_t layout);
VRK_API void VRK_CALL vrk_free_preproc2(void *handle);

/* ---- First converter: RGB to three samples, or to one gray or black sample --------------------------------------- */

/* Builds the first converter from a "csc1" table.
 *
 * table_size  length of the image in bytes: at least 8, at least 13 for a grid table
 * table       a subtype, of which only the first 8 bytes are read, or a grid:
 *    0   4  magic "csc1"
 *    4   4  "thrh": passes pixels through; "gray": luminance, one sample; "blck": full scale for white, else 0, one
 *           sample; "sold": every channel posterised to four levels; else the version of a grid table, at most "001z"
 *    8   1  input channels, 3
 *    9   1  output channels, 3
 *   10   1  N, grid points per axis, at least 2
 *   11   1  grid encoding, see below
 *   12  6N  R, G, B axes: N 16-bit positions each, strictly increasing at the working precision
 *           N*N*N points of three samples, B fastest, channels in order
 * Encodings; bit streams start with the most significant bit:
 *   0  16-bit samples
 *   1  12-bit samples, packed: two points in 9 bytes, an odd last one in 6
 *   2  10-bit samples, packed: four points in 15 bytes, the last 1, 2 or 3 in 4, 8 or 12
 *   3  bytes
 *   7  three planes of differences between bytes, one stream: the first sample in 8 bits, every further one as what to
 *      take off the one before: 1 and 5 bits v: v - 16; 01 and 6 bits: v - 64 below 48, else v - 32;
 *      001 and 9 bits: v - 256; 000: 0
 * flags       VRK_IN16, VRK_OUT16, VRK_PREC12; VRK_INVERT ("gray", "blck"). Bit 0x20 is cleared; IN16 or OUT16 sets
 *             PREC12.
 *
 * Returns the size, the same from both calls: 324 for a subtype, else (3s + 4sN^2 + 12)N + 3E + 622 with s = 1, E =
 * 256, or s = 2, E = 4096 under PREC12; N = 17: 21297 or 52520.
 * Both calls return 0 for a table that is null or too short for its header, another magic, a version above "001z",
 * channel counts other than 3 and 3, N below 2, another encoding. The build call also returns 0 for a misaligned `mem`,
 * an image shorter than its header announces, an axis that does not increase strictly at the working precision (the top
 * 8 or 12 bits of its positions), a difference that leaves 0 ... 255. */
VRK_API uint32_t VRK_CALL vrk_create_csc1(uint32_t table_size, const void *table, uint32_t flags, void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_csc1_hint(const void *handle);

/* Pixel layout of input and output; the whole word counts, and anything above 3 is layout 0. The pad sample of an
 * output pixel is left as it was. One-sample output ignores it. */
VRK_API void VRK_CALL vrk_set_csc1_rgb(void *handle, uint32_t layout);

/* Converts a run of pixels by tetrahedral interpolation between grid points (integer, truncated; Kasson et al., 1993),
 * or by the subtype's rule. src, mask, dst as told for layouts and masks; "gray" and "blck" write one sample a pixel.
 * Pixels of full scale in all three samples give the last grid point itself. Input beyond an axis' last position is
 * extrapolated and the result truncated to the output width: let axes end at 65535; input below the first position
 * counts as that position. Returns 1. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_csc1(void *handle, const void *src, const uint8_t *mask, uint32_t pixel_count,
                                         void *dst);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_csc1(void *handle);

/* ---- Second converter: RGB or gray to ink planes ----------------------------------------------------------------- */

/* Builds the second converter from a "csc2" table, or a one-sample curve converter from a curve image (see
 * vrk_create_preproc; one curve, version at most "001z").
 *
 * table          as "csc1", with magic "csc2", always a grid, and D output channels, 4 or 6. The samples of a point
 *                stand as C, M, Y, K or C, fifth, M, sixth, Y, K; those of encoding 6 as K, C, M, Y, fifth, sixth.
 *                Encodings:
 *   0  16-bit samples
 *   1  12-bit samples, packed: 6 or 9 bytes a point
 *   2  10-bit samples, packed: 5 bytes a point (D = 4); two points in 15 bytes, an odd last one in 8 (D = 6)
 *   3  bytes
 *   6  D planes of differences between 10-bit samples, one stream: the first sample in 10 bits, every further one as
 *      what to take off the one before: 1 and 7 bits v: v - 32; 01: 0; 001 and 8 bits: v - 192 below 160, else v - 64;
 *      000 and 11 bits: v - 1024
 * input_samples  low byte: 3 for RGB, 1 for gray (taken as R = G = B); a curve image takes 1
 * flags          VRK_IN16, VRK_OUT16, VRK_PREC12, adjusted as by vrk_create_csc1
 *
 * Returns the size, the same from both calls: (D N^2 s + 3s + 12)N + 3E + 714; N = 17: 21389 or 52612 (D = 4), 31215 or
 * 72264 (D = 6). A curve: 447 + entries (256, or 65536 under IN16) * bytes per output sample.
 * Returns 0 as vrk_create_csc1 (differences may not leave 0 ... 1023), and from both calls for another value of
 * input_samples or an entry count other than 1024. */
VRK_API uint32_t VRK_CALL vrk_create_csc2(uint32_t table_size, const void *table, uint32_t input_samples,
                                          uint32_t flags, void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_csc2_hint(const void *handle);

/* Pixel layout of RGB input, as vrk_set_csc1_rgb; output is always D samples back to back. */
VRK_API void VRK_CALL vrk_set_csc2_rgb(void *handle, uint32_t layout);

/* Converts a run of pixels, as vrk_xform_csc1 without a mask. src: RGB pixels of the handle's layout, or one sample a
 * pixel. dst: D samples a pixel, K, C, M, Y, fifth, sixth (one sample for a curve). Gray of full scale is interpolated
 * like any other level. Returns 1. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_csc2(void *handle, const void *src, uint32_t pixel_count, void *dst);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_csc2(void *handle);

/* ---- Post-processing: curves per ink plane ----------------------------------------------------------------------- */

/* Builds post-processing: every sample goes through its plane's main curve and then its plane curve, where given.
 *
 * planes       low byte, 1, 4 or 6: samples a pixel, unless the main table says otherwise
 * ..._on       non-zero: the table that follows is given. A table that is off is never looked at.
 * main_table   curve image (see vrk_create_preproc) of a version up to "002z" with 1, 4 or 6 curves, not fewer than
 *              `planes`, in the order C, M, Y, K or C, fifth, M, sixth, Y, K. Version "0010": `planes` samples in and
 *              out (K takes the last curve). Any other version: the curve count is the number of input samples and byte
 *              9, if not 0, that of output samples: 4 and 6 make six planes of four, the fifth from C and the sixth
 *              from M
 * k_table ...  curve images of one curve, version at most "001z", byte 9 being 0 or 1
 * flags        VRK_IN16 (curves are looked up by the top 10 bits), VRK_OUT16, VRK_MID10 (8-bit in and out: 10 bits
 *              between main and plane curve), VRK_COMPOSE (one table a plane: the fastest form). Kept as given.
 *
 * Returns the size, or the bytes used (at most the size). With N output samples, E = 1024 under IN16, else 256, and B
 * bytes per output sample: 123 + NB, a main table 2NE + 31 more, COMPOSE NEB + 31 more, and every plane table 543, or
 * 2079 under IN16 or when a main table goes with OUT16 or MID10.
 * Returns 0 for a table refused for its magic, version, counts or entry count (nothing is written), for N other than 1,
 * 4 and 6, and for a misaligned `mem`. */
VRK_API uint32_t VRK_CALL vrk_create_postproc(uint32_t planes, uint32_t main_on, const void *main_table, uint32_t k_on,
                                              const void *k_table, uint32_t c_on, const void *c_table, uint32_t m_on,
                                              const void *m_table, uint32_t y_on, const void *y_table,
                                              uint32_t fifth_on, const void *fifth_table, uint32_t sixth_on,
                                              const void *sixth_table, uint32_t flags, void *mem);

/* Flags as given. */
VRK_API uint32_t VRK_CALL vrk_query_postproc_hint(const void *handle);

/* Maps a run of pixels. src, dst: pixels of the path's sample counts and the flags' widths. A plane without a curve
 * gets the plain width change (through 10 bits for 16-bit samples once any plane has a curve).
 * Returns 1; 0 without writing anything when `planes` is not 1, 4 or 6, or when the main table names a pair of counts
 * that is neither equal nor 4 to 6. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_postproc(void *handle, const void *src, uint32_t pixel_count, void *dst);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_postproc(void *handle);

/* ---- Error diffusion --------------------------------------------------------------------------------------------- */

/* Builds error diffusion for lines of `width` pixels.
 *
 * spread_table  the error distribution:
 *    0  4  magic "edtb"
 *    4  4  version, at most "0010"
 *    8  2  row count; 511 rows cover every error
 *   10  1  column count, 7
 *   12     rows of 7 signed 16-bit amounts. Row e + 255 is what an error of e (8-bit scale) adds to the next pixel, the
 *          second next, and on the next line to two back, one back and the same column; the last two columns are unused
 * param_table   per-plane bytes stand as C, M, Y, K, fifth, sixth:
 *    0  4  magic "edpr"
 *    4  4  version; "0020" or higher marks the extended form, which makes dot cells
 *    8  6  level counts n, 0 for a plane that is not used
 *   14  4  modulation matrix: width, height (a power of two), column shift per repeat across, row shift per repeat down
 *   18  6  bits per pixel: 1, 2 or 4
 *   24  6  extended: scale_x, dots across a pixel: 1, 2 or 4
 *   30  6  extended: scale_y, output lines an input line becomes: 1 ... 4
 *   36  4  extended: dot pattern, as the modulation matrix, in cells
 *   24 or 40, for the used planes in that order, one list after the other:
 *          level values, n of 16 bits each, 0 ... 1023: the input level that an output level stands for
 *          thresholds, n - 1 of 16 bits each, ascending: the first input level of the next output level
 *          modulation matrices, signed bytes on the 10-bit scale: move the thresholds, never the error
 *          extended: dot patterns, for every level width * height cells of 16 bits: 4 x 4 dots, top row and left dot
 *          first
 * flags         VRK_IN16 (sets VRK_PREC10), VRK_PREC10, VRK_RANDOM4, VRK_K_CODE3
 *
 * The planes are 6 when fifth and sixth are used, else 4 when C, M, Y, K are, else K alone.
 *
 * Returns the size, or the bytes used (at most the size). Size: 12739 + W + 14 * rows, and for every used plane 4n + 38
 * + M + 3R + 5W, with W the width, n levels, M matrix cells, R = 1024 under PREC10, else 256; the extended form adds W,
 * and for every used plane 2n(P + 2) + 2W, with P pattern cells.
 * Both calls return 0 for a magic, version or length that is not as above; a column count other than 7 or no rows; a
 * matrix or pattern without width or height; scales out of range; a plane that the plane count covers but the table
 * does not use; a level count that does not fit its bits per pixel (standard form); a size beyond 32 bits. The build
 * call also returns 0 for a misaligned `mem`. */
VRK_API uint32_t VRK_CALL vrk_create_ed(uint32_t width, uint32_t spread_size, const void *spread_table,
                                        uint32_t param_size, const void *param_table, uint32_t flags, void *mem);

/* Describes the output. Returns 1. Writes only `info`. */
VRK_API uint32_t VRK_CALL vrk_query_ed_info(void *handle, vrk_ht_info *info);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_ed_hint(const void *handle);

/* Writes the six plane_bits of vrk_ht_info. */
VRK_API void VRK_CALL vrk_query_ed_bitlen(const void *handle, uint8_t *bits);

/* Begins a block of `block_width` pixels from column `block_x`, whose first line has the number `line`. When that is
 * the line after the last one processed, the errors of the block's columns are kept; any other line starts without
 * error. Matrices and dot patterns are anchored to absolute columns and line numbers.
 * Returns 1, or 0 without any change when the block does not fit the line width. */
VRK_API uint32_t VRK_CALL vrk_start_ed_block(void *handle, uint32_t block_width, uint32_t block_x, uint32_t line);

/* Halftones one line of the block and moves on to the next: even line numbers run left to right, odd ones back.
 * src: block_width pixels of 1, 4 or 6 samples (bytes, or 16-bit words under VRK_IN16). out_k ... out_6: packed lines
 * of (bits * block_width + 7) / 8 bytes, the first pixel in the most significant bits; those of planes that are not
 * produced are not touched and may be null. Codes are level numbers, with two exceptions. VRK_K_CODE3 writes a K plane
 * of three levels as 0, 2, 3. VRK_RANDOM4 writes 4-bit planes with a random choice among equal codes: of 5 levels, 1 as
 * 1, 5, 6 or 7 and 2 as 2 or 8; of 6 levels, 1 as 1, 6 or 7 and 2 as 2 or 8. Its generator's state belongs to the
 * calling thread, starts at 1 there and is never reseeded.
 * Returns 1; 0 without doing anything for a handle from an extended table. */
VRK_API uint32_t VRK_CALL vrk_exec_ed(void *handle, const void *src, uint8_t *out_k, uint8_t *out_c, uint8_t *out_m,
                                      uint8_t *out_y, uint8_t *out_5, uint8_t *out_6);

/* The same with the lines in an array, for both table forms: in plane order, scale_y lines for every plane. An extended
 * table's lines have (scale_x * block_width + 7) / 8 bytes and hold dots; a pixel of level 0 gets no dot when all
 * planes have the same scale and there is more than one. VRK_K_CODE3 and VRK_RANDOM4 have no effect on them.
 * Returns 1. */
VRK_API uint32_t VRK_CALL vrk_exec_edx(void *handle, const void *src, uint8_t *const *planes);

/* Forgets all accumulated error. */
VRK_API void VRK_CALL vrk_clear_ed_buf(void *handle);

/* Ends a block: drops the errors that ran out of it to both sides, keeps those inside for a block on the next line. */
VRK_API void VRK_CALL vrk_end_ed_block(void *handle);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_ed(void *handle);

/* ---- Ordered dither ---------------------------------------------------------------------------------------------- */

/* Builds ordered dither for lines of `line_width` pixels.
 *
 * table  per-plane bytes stand as C, M, Y, K, fifth, sixth:
 *    0   4  magic "dith"
 *    4   4  version, at most "001z"
 *    8  12  matrix width and height, 1 ... 255 each
 *   20   6  level counts N, 0 for a plane that is absent, else 2 and more
 *   26   6  bits per pixel: 1, 2, 4 or 8
 *   32      for the present planes in that order: level values, N of 16 bits, ascending: the input value at which a
 *           level begins, 0 ... 255 or, under IN16, 0 ... 1023; an even spread replaces them unless the last is full
 *           scale then their matrices: W * H of 16 bits, row by row; ranks 0 ... W * H - 1 spread the thresholds evenly
 * flags  VRK_IN16 (samples count by their top 10 bits), VRK_K_CODE3. Bit 0x10 is set.
 *
 * Plane counts as by vrk_create_ed.
 *
 * Returns the size, or the bytes used (at most the size): 972, and for every present plane E + 2NWH + 6N - 4, with E =
 * 1024 under IN16, else 256.
 * Both calls return 0 for another magic, a version above "001z", an image shorter than announced, a present plane
 * without width, height, two levels or legal bits, and a covered plane that is absent. The build call also returns 0
 * for a misaligned `mem`. */
VRK_API uint32_t VRK_CALL vrk_create_dither(uint32_t line_width, uint32_t table_size, const void *table, uint32_t flags,
                                            void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_dither_hint(const void *handle);

/* Describes the output. Returns 1, or 0 without writing anything when a pointer is null. */
VRK_API uint32_t VRK_CALL vrk_query_dither_info(const void *handle, vrk_ht_info *info);

/* Writes the six bits per pixel of the table, K first. */
VRK_API void VRK_CALL vrk_query_dither_bitlen(const void *handle, uint8_t *bits);

/* Begins a block, as vrk_start_ed_block; there is no error to keep. Returns 1, or 0 when the block does not fit the
 * line width: then no line of it may be run. */
VRK_API uint32_t VRK_CALL vrk_start_dither_block(void *handle, uint32_t block_width, uint32_t block_x, uint32_t line);

/* Halftones one line of the block and moves on to the next, as vrk_exec_ed. VRK_K_CODE3 writes a three-level 2-bit K
 * plane as 0, 1, 3 (alone, or beside 2-bit C, M, Y) or as 0, 2, 3 (beside 4-bit C, M, Y). Returns 1. */
VRK_API uint32_t VRK_CALL vrk_exec_dither(void *handle, const void *src, uint8_t *out_k, uint8_t *out_c, uint8_t *out_m,
                                          uint8_t *out_y, uint8_t *out_5, uint8_t *out_6);

/* The same with the lines in an array of 1, 4 or 6 entries. Returns 1. */
VRK_API uint32_t VRK_CALL vrk_exec_ditherx(void *handle, const void *src, uint8_t *const *planes);

/* Do nothing. */
VRK_API void VRK_CALL vrk_end_dither_block(void *handle);
VRK_API void VRK_CALL vrk_free_dither(void *handle);

#ifdef __cplusplus
}
#endif

#endif /* VRK_H */
