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
 * ONE PROTOCOL for the seven create functions. Call once with `mem` null: the result is the size of the handle in
 * bytes. Provide that much memory, at any address, and call again with the same arguments and `mem`: the library builds
 * the handle there and returns the bytes used, counted from `mem` (they depend on its address and are not more than the
 * size; the two converters return the size). 0 from either call means failure, and then `mem` is no handle. The address
 * of `mem` is the handle. It holds distances into itself: never move or copy it. It is used on the machine that built
 * it. The caller owns it and releases it after the last use; the free functions do nothing and exist so that all stages
 * look alike. Sizes are the same on every build of the library.
 *
 * The size call writes nothing. A build call that is refused for its arguments or a table's header writes nothing
 * either; one that is refused for a table's body may have written inside `mem`. Nothing is ever read outside a table's
 * announced size or written outside the reported size.
 *
 * TABLES are big-endian byte images that the caller passes, at any address; they are read only during the create call.
 * Where one comes without a size (the curve images of preproc and postproc), it must hold all that its header
 * announces. Versions are four characters, compared as one big-endian number. Bytes between the fields given below are
 * not looked at. A null table pointer whose switch is on, or where a table is required, gives 0.
 *
 * FLAGS. Every create function takes a flags word and keeps it, adjusted as told there; its query_..._hint function
 * returns the kept word. Bits without a meaning for a stage are kept and have no effect.
 *
 * SAMPLES are bytes (0 ... 255) or 16-bit words in the machine's byte order (0 ... 65535), interleaved per pixel
 * without padding, at any address. 255, 1023 (10 bits), 4095 (12 bits) and 65535 are the same full scale. A sample is
 * widened by repeating its top bits below it (8 to 10 bits: v << 2 | v >> 6; to 12: v << 4 | v >> 4; to 16: v * 257; 10
 * to 16: v << 6 | v >> 4; 12 to 16: v << 4 | v >> 8) and narrowed by dropping its low bits.
 * Ink planes stand in the order K, C, M, Y, fifth, sixth in all pixels, outputs and records, 0 being no ink; the fifth
 * accompanies cyan, the sixth magenta. RGB pixels have one of four layouts (set by the set_..._rgb functions, 0 after
 * creation):
 *     0: R, G, B    1: B, G, R    2: B, G, R, pad    3: pad, R, G, B
 *
 * MASKS (preproc, csc1) hold one bit a pixel of the run, pixel p in bit 7 - p % 8 of byte p / 8; a set bit makes the
 * output pixel 0. A null mask masks nothing.
 *
 * IN PLACE. `src` and `dst` of a transform may be the very same address when an output pixel is not longer in bytes
 * than an input pixel (six 8-bit planes from 16-bit RGB, too); any other overlap of what a call reads with what it
 * writes is the caller's error. With a pixel_count of 0 no pointer but the handle is followed.
 *
 * NULL AND INVALID POINTERS are not looked for, except where said. A null handle must not be passed. vrk_table_ref,
 * vrk_ht_info, `balance` and the array of a call's output lines are aligned as their C types; everything else may lie
 * at any address.
 *
 * THREADS. Handles share nothing, and look-up and create functions keep no state, so different threads may use them at
 * once. Transforms of preproc, preproc2, csc1, csc2 and postproc, and all queries, only read their handle: one handle
 * may serve several threads, as long as no set_..._rgb call runs beside them. Halftoning (start, exec, end, clear)
 * writes error lines and line counters into its handle: one thread at a time. The only state outside handles is a
 * pseudo-random generator per thread (see VRK_RANDOM4).
 *
 * STACK. A call uses less than:
 *     vrk_xform_csc1, vrk_xform_csc2, vrk_exec_dither, vrk_exec_ditherx  8 KiB
 *     vrk_xform_postproc                                                 4 KiB
 *     vrk_exec_ed, vrk_exec_edx                                          3 KiB
 *     every other function                                               2 KiB
 *
 * PROCESSORS. On x86 the library uses SSE2 instructions, which the processor must have. Create calls find out whether it
 * has SSE4.1 and AVX2, too, and the operating system keeps their registers, and note it in the handle, which is why that
 * is used on the machine that built it. Results and sizes depend neither on the processor nor on the build. Create calls
 * compute doubles in SSE2 registers and expect the rounding mode that threads start with, to nearest; the x87 control
 * word does not matter.
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
 *
 * RIMS. That page begins without error, so a 1 % tint has no dot in its first 18 lines; and errors leave it to both sides,
 * which takes half the ink from 12 columns there. Neither is seen when more is halftoned than printed:
 *   - lines ahead of the first one with ink: start the block n lines above it and run that line n times for dots that
 *     are dropped. Numbers below 0 continue from the highest ones, so direction and matrices stay the page's. n: the
 *     lines in which its lightest tint puts ink for one dot into every column, 255 / s for a sample s of two levels, and
 *     as many for few holes in a dark tint, s from the top.
 *   - 16 columns on both sides that repeat the edge pixels: a handle of u + 16 + width + 16 columns, with u + 16 a
 *     multiple of the matrix width, and the block from column u on, keep the page's column 0 on the matrix' first.
 *
 *   vrk_start_ed_block(ed, 16 + width + 16, u, 0u - n);           // a page with ink in line 0
 *   while (n-- != 0) vrk_exec_ed(ed, first_inks, k, c, m, yellow, NULL, NULL);
 *   ... the lines of the page; k + 2, c + 2, ... hold its dots, 16 bits from the left at 1 bit a dot
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
#define VRK_INVERT 0x040u  /* csc1 "gray", "blck": full scale minus the value, which makes ink of light */
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

/* Dots across and output lines that one input pixel becomes. */
typedef struct vrk_plane_scale {
  uint32_t scale_x, scale_y;
} vrk_plane_scale;

/* What a halftoning handle produces. Owned by the caller; planes in the order K, C, M, Y, fifth, sixth. Allocate line
 * buffers for the first plane_count planes only. The entries of other planes repeat what the table says of them, and so
 * does that of K where an "edpr" table does not use K. */
typedef struct vrk_ht_info {
  uint32_t method;                /* 1: error diffusion, 2: ordered dither */
  uint8_t plane_count;            /* planes produced: 1 (K), 4 (K, C, M, Y) or 6 */
  uint8_t plane_bits[6];          /* bits per output pixel, as in the table; dot cells: 1, of an unused plane 0 */
  uint32_t line_bytes[6];         /* bytes of one packed line over the full line width given at creation: (plane_bits *
                                     scale_x * width + 7) / 8; dither: without scale_x */
  uint32_t same_line_bytes;       /* 1: the produced planes have lines of one length, else 0 */
  uint32_t dot_expansion;         /* 1: pixels become cells of single dots (extended "edpr" table), else 0 */
  vrk_plane_scale plane_scale[6]; /* (1, 1), of an unused plane (0, 0); dot cells: as in the table */
  uint32_t same_scale;            /* 1: the produced planes have the same scale, else 0 */
} vrk_ht_info;

/* ---- Frame ------------------------------------------------------------------------------------------------------- */

/* The library's version as a zero-terminated text that lives as long as the library is loaded. Not to be written to. */
VRK_API const char *VRK_CALL vrk_get_version(void);

/* Reorders pixels held as C, M, Y, K into K, C, M, Y, in place: four samples a pixel, bytes or 16-bit words, at any
 * address. Touches just the samples of `pixel_count` pixels. */
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_8(uint32_t pixel_count, uint8_t *pixels);
VRK_API void VRK_CALL vrk_cmyk_to_kcmy_16(uint32_t pixel_count, void *pixels);

/* ---- Look-up of tables in parameter blobs ------------------------------------------------------------------------ */

/* A parameter blob holds variants of one kind of table under four-character tags. All numbers are big-endian.
 *
 *    0  4  magic "CTSI"
 *    4  4  blob type, told for each function
 *    8  4  version, at most "001z"; for vrk_log_ingamma2 at most "002z"
 *   24  1  class
 *   31  1  end of header, 0x1A
 *   32  2  entry count, at least 1
 *   40     entries of 12 bytes: tag (blanks where unused), offset of the table from the blob's first byte, its length
 *
 * The first entry of a tag wins. The tables themselves are not looked into. Call with ref->data null to learn
 * ref->length, then with ref->data pointing to that much memory to have the table copied.
 *
 * blob_size, blob  the blob, at any address; nothing is read outside it
 * family           0 or 1: the first character of every tag, "H" or "X" (told below for H)
 *
 * Returns 1 when the table was found, else 0, and then nothing is copied: null blob or ref, blob_size 0, a family or
 * selector out of range (ref->length stays as it was; the csc look-ups clear it before they look at kind), or a blob of
 * another type, above the maximum version, without its end mark, with an empty or truncated directory, without the tag,
 * or whose entry leaves the blob (ref->length is then 0).
 * Threads: any number at once, on the same blob too. */

/* First and second converter's tables; blob types "CS1T" and "CS2T". kind 0 ... 6 chooses a rule, the selectors a, b,
 * c, d refine it. Below, F is the family letter; class C means a blob of class 'C'; T|U means T if the blob has it,
 * else U. Selectors are compared as whole words, except d of vrk_log_csc2: its low byte.
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

/* Input tone curves; blob type "INGM". step -2 ... 2: "HD2 ", "HD1 ", "HT  ", "HB1 ", "HB2 ". */
VRK_API uint32_t VRK_CALL vrk_log_ingamma(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                          int16_t step);

/* The same from blobs of a version up to "002z". step -5 ... 5: tags "HB-5" ... "HB00" ... "HB+5". */
VRK_API uint32_t VRK_CALL vrk_log_ingamma2(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                           int16_t step);

/* Output tone curves; blob type "OTGM". Tag "HN  ". */
VRK_API uint32_t VRK_CALL vrk_log_outgamma(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family);

/* Rank tables; blob type "HRKT". step -9 ... 9 as sign and digit (0: "00"), ink 0 ... 5 for K, C, M, Y, D, N: "HK+2",
 * or "HR+2", which serves all inks, where the blob has no such entry. An ink out of range gives length 0. */
VRK_API uint32_t VRK_CALL vrk_log_rank(uint32_t blob_size, const void *blob, vrk_table_ref *ref, uint16_t family,
                                       int16_t step, int16_t ink);

/* ---- Curve image: the tone curves of preproc, preproc2, csc2 and postproc ---------------------------------------- */

/* A byte image of one or more curves:
 *    0  4  magic "1dlt"
 *    4  4  version; each stage tells the highest that it takes
 *    8  1  curve count
 *    9  1  output count; only postproc looks at it
 *   10  2  entry count, 1024
 *   12     curves of 1024 entries of 16 bits, 2048 bytes each
 *
 * Entry j is the output level, 0 ... 65535, of the input level j, 0 ... 1023. An 8-bit level v is widened: it reads
 * entry v << 2 | v >> 6. A 16-bit level reads the entry of its top 10 bits; only the curves of csc2 lie between entries
 * as well (see there). Results of fewer bits are the top bits of an entry. */

/* ---- Pre-processing: 8-bit RGB, adjusted before conversion ------------------------------------------------------- */

/* Builds a pre-processor: balance, lift, contrast, RGB curves, then one curve, each only if asked for.
 *
 * balance         null for none, else the steps of R, G, B, of any value
 * lift, contrast  low byte, signed; 0 for none
 * use_curve       non-zero: `curve` is a curve image with one curve, applied to all three channels
 * use_rgb_curves  non-zero: `rgb_curves` is a curve image with three curves, R, G, B
 *                 Curve images: version at most "001z"; entries count by their top 10 bits.
 * flags           VRK_OUT16: 16-bit output. VRK_MID10: 10-bit tables with 8-bit output. VRK_COMPOSE: the results of
 *                 MID10, in a larger handle and no faster: all handles keep one table a channel. VRK_IN16 is not
 *                 supported here and is cleared.
 *
 * Without OUT16, MID10 and COMPOSE every step hands on 8 bits. With any of them the first step widens to 10 bits, and
 * the output is the last step's value, narrowed or widened; without any step, it is the input.
 *
 * With levels of 0 ... 1, balance and lift move the points of the diagonal, its point c by s(c) up and s(c) left, and
 * stop at 0 and 1; contrast bends both halves of it. For a step of n, with examples for n = 1 at 8 bits:
 *   balance   s(c) = n * 5/255 * (1 - e^(-10c) - e^(-10(1 - c))) / (1 - 2e^-5). The middle rises by twice n * 5/255;
 *             black and white stay. 128 -> 138, 32 -> 40
 *   lift      s(c) = n/40 * c * (1 - e^(-8(1 - c))), about n * 5 % of a level, fading out at white. 128 -> 134
 *   contrast  with g = 1 + n/5 (n below -5: as -5), level i of 0 ... 127 becomes 127 * (i / 127)^g and level 255 - i
 *             becomes 255 - 127 * (i / 127)^g, truncated; of 10 bits with 511 and 1023. 64 -> 55, 192 -> 200
 *
 * Returns the size, or the bytes used. Size: 65 + 35 (39 with OUT16) + balance 1573 + lift and contrast 544 each (2080
 * with OUT16, MID10 or COMPOSE) + curve 2079 + RGB curves 6175 + COMPOSE 1567.
 * Both calls return 0 for a null image that is asked for. The size call, which is where headers are examined, also does
 * for one of another magic, a version above "001z", another curve count or entry count. */
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

/* As vrk_create_preproc, but:
 *
 * balance   null, or two control values a and b, -5 ... 5 (clamped), that give the steps: R = a, and for b not below 0
 *           G = min(-a, max(-a - 2b, -b)) and B = max(-a, min(-a + 2b, b)); for b below 0 the same of -b, with G and B
 *           exchanged. So a moves R against G and B, and b moves B against G. A step moves half as far: 2.5/255 in
 *           the place of 5/255. Step 1: 128 -> 133
 * contrast  g = 1 + 0.4n, or 1 / (1 - 0.4n) for n below 0. n = 1: 64 -> 48, 192 -> 207
 *
 * There is no lift. Size: 57 instead of 65, no lift term. */
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
 * table       a fixed rule, of which only the first 8 bytes are read, or a grid:
 *    0   4  magic "csc1"
 *    4   4  "thrh", "gray", "blck" or "sold", the fixed rules (see vrk_xform_csc1), else the version of a grid table,
 *           at most "001z"
 *    8   1  input channels, 3
 *    9   1  output channels, 3
 *   10   1  N, grid points per axis, at least 2
 *   11   1  grid encoding, see below
 *   12  6N  R, G, B axes: N 16-bit positions each, strictly increasing at the working precision
 *           N*N*N points of three samples, B fastest: point (i, j, k) of R, G, B is number (i * N + j) * N + k
 * Working precision is 8 or, under PREC12, 12 bits: positions and samples of more bits keep their top 8 or 12, samples
 * of fewer bits are widened. Encodings; bit streams start with the most significant bit:
 *   0  16-bit samples
 *   1  12-bit samples, packed: two points in 9 bytes, an odd last one in 6
 *   2  10-bit samples, packed: four points in 15 bytes, the last 1, 2 or 3 in 4, 8 or 12
 *   3  bytes
 *   7  differences between bytes, one stream: channel 0 of all points, then channel 1, then 2. A channel opens with a
 *      sample of 8 bits; every further sample is the one before minus d:
 *        1    and 5 bits v   d = v - 16
 *        01   and 6 bits v   d = v - 64 for v below 48, else v - 32
 *        001  and 9 bits v   d = v - 256
 *        000                 d = 0
 * flags       VRK_IN16, VRK_OUT16, VRK_PREC12; VRK_INVERT ("gray", "blck"). Bit 0x20 is cleared; IN16 or OUT16 sets
 *             PREC12.
 *
 * Returns the size, the same from both calls: 324 for a fixed rule, else (3s + 4sN^2 + 12)N + 3E + 622 with s = 1, E =
 * 256, or s = 2, E = 4096 under PREC12; N = 17: 21297 or 52520.
 * Both calls return 0 for a table that is null or too short for its header, another magic, a version above "001z",
 * channel counts other than 3 and 3, N below 2, another encoding. The build call also returns 0 for an image shorter
 * than its header announces (of a packed encoding with all bytes of its last group), an axis that does not increase
 * strictly at the working precision, a difference that leads out of 0 ... 255. */
VRK_API uint32_t VRK_CALL vrk_create_csc1(uint32_t table_size, const void *table, uint32_t flags, void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_csc1_hint(const void *handle);

/* Pixel layout of input and output; the whole word counts, and anything above 3 is layout 0. The pad sample of an
 * output pixel is left as it was. One-sample output ignores it. */
VRK_API void VRK_CALL vrk_set_csc1_rgb(void *handle, uint32_t layout);

/* Converts a run of pixels. src: `pixel_count` pixels of the handle's layout. mask: see MASKS, or null for none. dst:
 * as many pixels of the same layout, or one sample each from "gray" and "blck". Masked pixels become 0 under VRK_INVERT
 * as well. All rules work at the working precision, to which samples are widened or narrowed first; full scale M, 255
 * or 4095, is judged there, so that 16-bit samples from 65520 on count as white.
 *
 * A grid is interpolated tetrahedrally (Kasson, Plouffe and Nin, Proc. SPIE 1909, 1993). Along every axis, level x lies
 * in the cell from position p to position q at the fraction ((x - p) * (65536 / (q - p))) >> 9 of 128 (12 bits:
 * 4194304, >> 12, of 1024), the quotient truncated. From the cell's lowest corner a path leads to its highest one,
 * along the axis of the largest fraction first; the order of equal ones does not matter. The output is the lowest
 * corner's sample plus the sum, over the three edges of the path, of fraction times difference of the edge's ends,
 * divided by 128 or 1024 and rounded toward minus infinity. Full scale in all three samples gives the last grid point
 * itself.
 * Input beyond an axis' last position is extrapolated from the last cell, and the result cut to the output's bits: let
 * axes end at 65535. Input below the first position counts as that position.
 *
 * The fixed rules, "sold" for each channel:
 *           8 bits, M = 255                         12 bits, M = 4095
 *   "thrh"  the sample                              the sample: 16-bit 0x1234 leaves as 0x1231
 *   "gray"  (307 R + 615 G + 102 B) >> 10           (4915 R + 9831 G + 1638 B) >> 14
 *   "blck"  M for R = G = B = M, else 0             the same
 *   "sold"  0 from 0, 64 from 64, 128 from 128 on,  0 from 0, 1024 from 1024, 2048 from 2048 on,
 *           255 for 255                             4095 for 4095
 *
 * Returns 1. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_csc1(void *handle, const void *src, const uint8_t *mask, uint32_t pixel_count,
                                         void *dst);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_csc1(void *handle);

/* ---- Second converter: RGB or gray to ink planes ----------------------------------------------------------------- */

/* Builds the second converter from a "csc2" table, or a one-sample curve converter from a curve image (one curve,
 * version at most "001z").
 *
 * table_size     length of the image in bytes: at least 13; a curve is built from 2060 on
 * table          as "csc1", with magic "csc2", always a grid, and D output channels, 4 or 6. The samples of a point
 *                stand as C, M, Y, K or C, fifth, M, sixth, Y, K; those of encoding 6 as K, C, M, Y, fifth, sixth.
 *                Encodings:
 *   0  16-bit samples
 *   1  12-bit samples, packed: 6 or 9 bytes a point
 *   2  10-bit samples, packed: 5 bytes a point (D = 4); two points in 15 bytes, an odd last one in 8 (D = 6)
 *   3  bytes
 *   6  differences between 10-bit samples, one stream: D channels as in encoding 7 of "csc1". A channel opens with a
 *      sample of 10 bits; every further sample is the one before minus d:
 *        1    and 7 bits v   d = v - 32
 *        01                  d = 0
 *        001  and 8 bits v   d = v - 192 for v below 160, else v - 64
 *        000  and 11 bits v  d = v - 1024
 * input_samples  low byte: 3 for RGB, 1 for gray (taken as R = G = B); a curve image takes 1
 * flags          VRK_IN16, VRK_OUT16, VRK_PREC12, adjusted as by vrk_create_csc1; PREC12 has no effect on a curve
 *
 * Returns the size, the same from both calls: (D N^2 s + 3s + 12)N + 3E + 714; N = 17: 21389 or 52612 (D = 4), 31215 or
 * 72264 (D = 6). A curve: 447 + entries (256, or 65536 under IN16) * bytes per output sample.
 * Returns 0 as vrk_create_csc1 (differences may not lead out of 0 ... 1023), and from both calls for another value of
 * input_samples, and a curve count other than 1 or an entry count other than 1024. */
VRK_API uint32_t VRK_CALL vrk_create_csc2(uint32_t table_size, const void *table, uint32_t input_samples,
                                          uint32_t flags, void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_csc2_hint(const void *handle);

/* Pixel layout of RGB input, as vrk_set_csc1_rgb; output is always D samples back to back. No effect on gray input. */
VRK_API void VRK_CALL vrk_set_csc2_rgb(void *handle, uint32_t layout);

/* Converts a run of pixels, as vrk_xform_csc1 without a mask. src: RGB pixels of the handle's layout, or one sample a
 * pixel. dst: D samples a pixel, K, C, M, Y, fifth, sixth (one sample for a curve). Gray of full scale is interpolated
 * like any other level.
 * A curve is looked up without working precision: by 8-bit samples as told for curve images; by 16-bit samples with
 * entry n at level n << 6 | n >> 4, and levels in between on the straight line between two entries, rounded to nearest.
 * 8-bit output is the high byte.
 * Returns 1. Only reads the handle. */
VRK_API uint32_t VRK_CALL vrk_xform_csc2(void *handle, const void *src, uint32_t pixel_count, void *dst);

/* Does nothing. */
VRK_API void VRK_CALL vrk_free_csc2(void *handle);

/* ---- Post-processing: curves per ink plane ----------------------------------------------------------------------- */

/* Builds post-processing: every sample goes through its plane's main curve and then its plane curve, where given.
 *
 * planes       low byte, 1, 4 or 6: samples a pixel, unless the main table says otherwise
 * ..._on       non-zero: the table that follows is given. A table that is off is never looked at.
 * main_table   curve image of a version up to "002z"; see below
 * k_table ...  curve images of one curve, version at most "001z", byte 9 being 0 or 1
 * flags        VRK_IN16, VRK_OUT16; VRK_MID10: 10 bits between main and plane curve (8-bit in and out; other widths
 *              always pass 10 there); VRK_COMPOSE: the same results by one table a plane, the fastest form. Kept as
 *              given.
 *
 * The main table has 1, 4 or 6 curves by byte 8, not fewer than `planes`. Its version and byte 9 say how many samples
 * go in and come out:
 *   version "0010"  byte 9 is ignored; `planes` samples in and out
 *   any other       byte 8 samples in, byte 9 samples out. Byte 9 is 0 (the same as byte 8), equal to byte 8, 4 or 6.
 *                   Transforms take 1 to 1, 4 to 4, 6 to 6 and 4 to 6; they refuse 1 to 4, 1 to 6 and 6 to 4, and
 *                   every `planes` other than 1, 4 and 6. Byte 8 bounds `planes`: a 4-to-6 table takes 4 or 1.
 * The image must hold max(byte 8, byte 9) curves ("0010": byte 8), that many in the order
 *   1: K    4: C, M, Y, K    6: C, fifth, M, sixth, Y, K
 * Under "0010", pixels of fewer planes use their own planes' curves; one plane uses the last curve. From 4 to 6, the
 * fifth plane comes from the C sample and the sixth from the M sample, each through its own curves.
 *
 * Returns the size, or the bytes used. With N output samples, E = 1024 under IN16, else 256, and B bytes per output
 * sample: 123 + NB, a main table 2NE + 31 more, COMPOSE NEB + 31 more, and every plane table 543, or 2079 under IN16 or
 * when a main table goes with OUT16 or MID10.
 * Both calls return 0 for a table refused for its magic, version, counts or entry count, and for N other than 1, 4 and
 * 6; nothing is written then. */
VRK_API uint32_t VRK_CALL vrk_create_postproc(uint32_t planes, uint32_t main_on, const void *main_table, uint32_t k_on,
                                              const void *k_table, uint32_t c_on, const void *c_table, uint32_t m_on,
                                              const void *m_table, uint32_t y_on, const void *y_table,
                                              uint32_t fifth_on, const void *fifth_table, uint32_t sixth_on,
                                              const void *sixth_table, uint32_t flags, void *mem);

/* Flags as given. */
VRK_API uint32_t VRK_CALL vrk_query_postproc_hint(const void *handle);

/* Maps a run of pixels. src, dst: pixels of the sample counts and widths that creation settled. A plane without a curve
 * gets the plain width change, through 10 bits for 16-bit samples once any plane has a curve; without any curve, 16-bit
 * samples keep all their bits.
 * Returns 1; 0 without writing anything when `planes` was not 1, 4 or 6, or when the main table names a pair of counts
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
 *    8  2  row count, at least 1; 511 rows cover every error
 *   10  1  column count, 7
 *   12     rows of 7 signed 16-bit amounts. Row e + 255 is what a quantisation error of e (8-bit scale) adds to the
 *          next pixel, the second next, and on the next line to two back, one back and the same column; the last two
 *          columns are unused
 * param_table   per-plane bytes stand as C, M, Y, K, fifth, sixth:
 *    0  4  magic "edpr"
 *    4  4  version; "0020" or higher marks the extended form, which makes dot cells
 *    8  6  level counts n, 0 for a plane that is not used
 *   14  4  modulation matrix: width W, height H (a power of two), column shift per repeat across, row shift per repeat
 *          down. Page column x reads column ((x / W) * column shift + x % W) % W, line y reads row
 *          ((y / H) * row shift + (y & (H - 1))) & (H - 1)
 *   18  6  bits per pixel: 1, 2 or 4; other values give lines of zeros. Ignored in the extended form
 *   24  6  extended: scale_x, dots across a pixel: 1, 2 or 4
 *   30  6  extended: scale_y, output lines an input line becomes: 1 ... 4
 *   36  4  extended: dot pattern, as the modulation matrix, in cells
 *   24 or 40, for the used planes in that order, one list after the other:
 *          level values, n of 16 bits each, 0 ... 1023: the input level that an output level stands for
 *          thresholds, n - 1 of 16 bits each, ascending: the first input level of the next output level
 *          modulation matrices, W * H signed bytes each, row by row, on the 10-bit scale
 *          extended: dot patterns, for every level width * height cells of 16 bits, row by row. A cell is 4 x 4 dots:
 *          bits 15 ... 12 are its top row, bits 11 ... 8 the next; the most significant bit is the left dot
 * flags         VRK_IN16 (sets VRK_PREC10), VRK_PREC10, VRK_RANDOM4, VRK_K_CODE3
 *
 * The planes produced are 6 when fifth and sixth are used, else 4 when C, M, Y, K are, else K alone. When then K is not
 * used either, no line is produced. Used planes that are not produced count for the size only.
 *
 * Returns the size, or the bytes used. Size: 12739 + width + 14 * rows, and for every used plane 4n + 38 + M + 3R + 5 *
 * width, with M = W * H matrix entries, R = 1024 under PREC10, else 256; the extended form adds width, and for every
 * used plane 2n(P + 2) + 2 * width, with P pattern cells.
 * Both calls return 0 for another magic; a version of the distribution above "0010"; a table too short for its header
 * and lists; a column count other than 7 or no rows; a matrix or pattern without width or height; scales of a used
 * plane that are out of range; fifth and sixth used without all of C, M, Y, K; a size beyond 32 bits. */
VRK_API uint32_t VRK_CALL vrk_create_ed(uint32_t width, uint32_t spread_size, const void *spread_table,
                                        uint32_t param_size, const void *param_table, uint32_t flags, void *mem);

/* Describes the output. Returns 1. Writes only `info`; may be called at any time, or never. */
VRK_API uint32_t VRK_CALL vrk_query_ed_info(void *handle, vrk_ht_info *info);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_ed_hint(const void *handle);

/* Writes the six plane_bits of vrk_ht_info. */
VRK_API void VRK_CALL vrk_query_ed_bitlen(const void *handle, uint8_t *bits);

/* Begins a block of `block_width` pixels from column `block_x`, whose first line has the number `line`. When that is
 * the line after the last one processed, the errors of this block's columns are kept, whether or not the block before
 * was ended; any other line starts without error. Matrices and dot patterns are anchored to absolute columns and line
 * numbers.
 * Returns 1, or 0 without any change when the block does not fit the line width. */
VRK_API uint32_t VRK_CALL vrk_start_ed_block(void *handle, uint32_t block_width, uint32_t block_x, uint32_t line);

/* Halftones one line of the block and moves on to the next. Even line numbers run left to right, odd ones right to
 * left; "next" and "back" follow the scan. The error is distributed as the table says, in the manner of Floyd and
 * Steinberg (Proc. SID 17, 1976). For every pixel and produced plane:
 *   v      the sample at working precision plus the error that came to this pixel
 *   level  how many thresholds are not above v - m, with the entry m of the modulation matrix at the pixel's place: a
 *          positive entry raises the thresholds. It never enters the error
 *   q      v minus the level's value: the quantisation error. The amounts of its row go to the five neighbours
 * A sample of 0 to which no error came is level 0 and passes nothing on. Errors that leave the block reach none of its
 * pixels.
 *   8-bit precision   row q + 255. Level values and thresholds of the table count as (value >> 2) & 255, modulation as
 *                     entry / 4, truncated toward 0
 *   10-bit precision  row q / 4 + 255, truncated toward 0, and its amounts times 4. The remainder r = q % 4, with the
 *                     sign of q, is the carry: r - r % 2 goes to the third next pixel, r % 2 to the fourth
 * A q beyond -1024 ... 1023 counts as the nearer of these, one beyond the table's rows takes the first or last row.
 * Errors add up in 16 bits, wrapping around.
 *
 * src: block_width pixels of 1, 4 or 6 samples (bytes, or 16-bit words under VRK_IN16), from the block's first column.
 * out_k ... out_6: packed lines of (bits * block_width + 7) / 8 bytes, the leftmost pixel in the most significant
 * bits; what is left of the last byte is 0. Lines of planes that are not produced are not touched and may be null; so
 * may out_k of a table that does not use K.
 *
 * Codes are level numbers, with two exceptions. VRK_K_CODE3 writes a K plane of three levels as 0, 2, 3. VRK_RANDOM4
 * writes 4-bit planes with a random choice among equal codes: of 5 levels, 1 as 1, 5, 6 or 7 and 2 as 2 or 8; of 6
 * levels, 1 as 1, 6 or 7 and 2 as 2 or 8. A code of more bits than the plane has is OR-ed into the byte all the same:
 * its high bits land on the pixel before, or fall off the byte's top.
 * The generator of these choices has a state of 32 bits that belongs to the calling thread, starts at 1 there and is
 * never reseeded. Each level 1 or 2 of such a plane draws once, plane by plane and left to right:
 *   state = state * 214013 + 2531011, drawn value d = (state >> 16) & 0x7FFF; the choice is d modulo 4, 3 or 2
 *
 * Returns 1; 0 without doing anything for a handle from an extended table. */
VRK_API uint32_t VRK_CALL vrk_exec_ed(void *handle, const void *src, uint8_t *out_k, uint8_t *out_c, uint8_t *out_m,
                                      uint8_t *out_y, uint8_t *out_5, uint8_t *out_6);

/* The same with the lines in an array, for both table forms: scale_y lines for every produced plane, K's first; none
 * for K where the table does not use it. An extended table's lines have (scale_x * block_width + 7) / 8 bytes and hold
 * dots: line r of a plane takes the left scale_x dots of row r of each pixel's cell, the leftmost pixel in the most
 * significant bits. A pixel of level 0 gets no dot when all planes have the same scale and there is more than one; else
 * its pattern counts like any other. VRK_K_CODE3 and VRK_RANDOM4 have no effect on them.
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
 * table_size  length of the image in bytes
 * table       per-plane bytes stand as C, M, Y, K, fifth, sixth; T is the top input level, 255 or, under IN16, 1023:
 *    0   4  magic "dith"
 *    4   4  version, at most "001z"
 *    8  12  matrix width W and height H, 1 ... 255 each
 *   20   6  level counts N, 0 for a plane that is absent, else 2 and more
 *   26   6  bits per pixel: 1, 2, 4 or 8
 *   32      for the present planes in that order: level values, N of 16 bits, ascending: the input level, 0 ... T, at
 *           which an output level begins. Unless the last one is T, an even spread replaces them: value i becomes
 *           i * (T + 1) / (N - 1), truncated, and the last one T
 *           then their matrices: W * H entries of 16 bits, row by row; the ranks 0 ... W * H - 1 spread the thresholds
 *           evenly
 * flags       VRK_IN16 (samples count by their top 10 bits), VRK_K_CODE3. Bit 0x10 is set.
 *
 * Planes are produced as by vrk_create_ed; those that are must be present.
 *
 * Returns the size, or the bytes used. Size: 972, and for every present plane E + 2NWH + 6N - 4, with E = T + 1.
 * Both calls return 0 for a null table, another magic, a version above "001z", an image shorter than announced, a
 * present plane without width, height, two levels or legal bits, and a produced plane that is absent. */
VRK_API uint32_t VRK_CALL vrk_create_dither(uint32_t line_width, uint32_t table_size, const void *table, uint32_t flags,
                                            void *mem);

/* Flags as kept. */
VRK_API uint32_t VRK_CALL vrk_query_dither_hint(const void *handle);

/* Describes the output. Returns 1, or 0 without writing anything when a pointer is null. */
VRK_API uint32_t VRK_CALL vrk_query_dither_info(const void *handle, vrk_ht_info *info);

/* Writes the six plane_bits of vrk_ht_info. */
VRK_API void VRK_CALL vrk_query_dither_bitlen(const void *handle, uint8_t *bits);

/* Begins a block, as vrk_start_ed_block; there is no error to keep, so any line may follow any other. Returns 1, or 0
 * when the block does not fit the line width: then no line may be run until another block has begun. */
VRK_API uint32_t VRK_CALL vrk_start_dither_block(void *handle, uint32_t block_width, uint32_t block_x, uint32_t line);

/* Halftones one line of the block and moves on to the next; src and outputs as for vrk_exec_ed. A sample v (under
 * VRK_IN16 its top 10 bits) lies in the interval from level value a of output level j to the next level value b. It
 * becomes level j + 1 when it is above its threshold, else level j (after Bayer, 1973). With the matrix entry e at
 * column x % W and row y % H, for page column x and line y:
 *   threshold  a + (b - a - 1) * r / D + 0.5, truncated, where
 *   bytes      r = e / 4 and D = W * H / 4 - 1, both truncated: a rank counts by its quarter
 *   VRK_IN16   r = e and D = W * H - 1
 *   D is at least 1; thresholds stop at 0 and 65535
 * So a 4 x 4 matrix of ranks gives bytes four thresholds, with two levels 0, 85, 169 and 254; 16 x 16 ranks give 64. A
 * sample of 0 is always level 0. Full scale is always the top level where no r exceeds D: for bytes let W * H be a
 * multiple of 4. Samples below the first level value lie in the first interval.
 *
 * Codes are level numbers. VRK_K_CODE3 writes a three-level 2-bit K plane as 0, 1, 3 (alone, or beside 2-bit C, M, Y)
 * or as 0, 2, 3 (beside 4-bit C, M, Y); handles of six planes, and of other bits, use no such codes. A level of more
 * bits than the plane has runs over into the pixel before, or falls off the byte's top. It is OR-ed into the byte when
 * the handle produces K alone in 1, 2 or 4 bits, four planes with C, M, Y in 2 or 4 bits and K in 1 or 2, or six planes
 * all in 1, 2 or 4; in all other handles it is added.
 * Returns 1. */
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
