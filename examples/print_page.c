#include "print_page.h"

#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

enum { page_width = 500, page_height = 240, band_lines = 32, planes = 4 };

static void require(bool ok, const char* what) {
  if (ok) return;
  fprintf(stderr, "print_page: %s\n", what);
  exit(1);
}

static void* memory(uint32_t size, const char* whose) {
  void* const block = malloc(size);
  require(size != 0 && block != NULL, whose);
  return block;
}

typedef struct table {
  uint32_t size;
  uint8_t* bytes;
} table;

static table load(const char* path) {
  table t;
  FILE* const file = fopen(path, "rb");
  require(file != NULL && fseek(file, 0, SEEK_END) == 0, path);
  t.size = (uint32_t)ftell(file);
  t.bytes = memory(t.size, path);
  rewind(file);
  require(fread(t.bytes, 1, t.size, file) == t.size, path);
  fclose(file);
  return t;
}

/* The tables of converter and halftone lie in parameter blobs, one variant for every print setting. A table is looked
 * up twice: for its length, then for its bytes. */
static table ink_table(const page_exports* vrk) {
  const table blob = load("ink.blob");
  vrk_table_ref found = {0, NULL};
  require(vrk->log_csc2(blob.size, blob.bytes, &found, 0, 1, 0, 0, 0, 0), "ink.blob has no table for plain paper");
  found.data = memory(found.length, "the ink table");
  vrk->log_csc2(blob.size, blob.bytes, &found, 0, 1, 0, 0, 0, 0);
  free(blob.bytes);
  return (table){found.length, found.data};
}

static table halftone_table(const page_exports* vrk) {
  const table blob = load("halftone.blob");
  vrk_table_ref found = {0, NULL};
  require(vrk->log_htone(blob.size, blob.bytes, &found, 0, planes), "halftone.blob has no table for four inks");
  found.data = memory(found.length, "the halftone table");
  vrk->log_htone(blob.size, blob.bytes, &found, 0, planes);
  free(blob.bytes);
  return (table){found.length, found.data};
}

/* A handle lies in our own memory. The create function is called twice: for the size, then with the memory. The tables
 * may be released afterwards. */
static void* ink_converter(const page_exports* vrk) {
  const table grid = ink_table(vrk);
  void* const handle = memory(vrk->create_csc2(grid.size, grid.bytes, 3, 0, NULL), "the ink table was refused");
  require(vrk->create_csc2(grid.size, grid.bytes, 3, 0, handle) != 0, "the ink table was not built");
  vrk->set_csc2_rgb(handle, 1); /* B, G, R, as bitmaps hold it */
  free(grid.bytes);
  return handle;
}

static void* halftone(const page_exports* vrk) {
  const table spread = load("spread.edtb"), levels = halftone_table(vrk);
  void* const handle = memory(vrk->create_ed(page_width, spread.size, spread.bytes, levels.size, levels.bytes, 0, NULL),
                              "the halftone tables were refused");
  require(vrk->create_ed(page_width, spread.size, spread.bytes, levels.size, levels.bytes, 0, handle) != 0,
          "error diffusion was not built");
  free(spread.bytes);
  free(levels.bytes);
  return handle;
}

/* The page: hues from left to right, darker towards the top, and groups of black lines. */
static void draw_line(uint32_t y, uint8_t* bgr) {
  for (uint32_t x = 0; x < page_width; ++x) {
    const uint32_t hue = x * 6 * 256 / page_width, part = hue % 256, light = y * 255 / (page_height - 1);
    const uint8_t wheel[6][3] = {{255, (uint8_t)part, 0}, {(uint8_t)(255 - part), 255, 0},
                                 {0, 255, (uint8_t)part}, {0, (uint8_t)(255 - part), 255},
                                 {(uint8_t)part, 0, 255}, {255, 0, (uint8_t)(255 - part)}};
    const bool rule = x % 50 < 10 && y % (2 + x / 50) == 0;
    for (uint32_t c = 0; c < 3; ++c) bgr[3 * x + 2 - c] = rule ? 0 : (uint8_t)(wheel[hue / 256][c] * light / 255);
  }
}

void print_page(const page_exports* vrk) {
  static const char* const names[planes] = {"k.pbm", "c.pbm", "m.pbm", "y.pbm"};
  static uint8_t bgr[page_width * 3], inks[page_width * planes];
  void *const converter = ink_converter(vrk), *const diffusion = halftone(vrk);
  FILE* files[planes];
  uint8_t* lines[planes];
  vrk_ht_info info;

  vrk->query_ed_info(diffusion, &info);
  require(info.plane_count == planes && info.plane_bits[0] == 1, "not four planes of 1 bit");
  for (int p = 0; p < planes; ++p) {
    lines[p] = memory(info.line_bytes[p], "a line of output");
    files[p] = fopen(names[p], "wb");
    require(files[p] != NULL, names[p]);
    fprintf(files[p], "P4 %d %d\n", page_width, page_height);
  }

  /* A spooler sends the page in bands. Each is a block, which continues with the errors of the block above. */
  for (uint32_t top = 0; top < page_height; top += band_lines) {
    const uint32_t bottom = top + band_lines < page_height ? top + band_lines : page_height;
    require(vrk->start_ed_block(diffusion, page_width, 0, top) != 0, "the block does not fit the line");
    for (uint32_t y = top; y < bottom; ++y) {
      draw_line(y, bgr);
      require(vrk->xform_csc2(converter, bgr, page_width, inks) != 0, "the converter does not run");
      require(vrk->exec_ed(diffusion, inks, lines[0], lines[1], lines[2], lines[3], NULL, NULL) != 0,
              "error diffusion does not run");
      for (int p = 0; p < planes; ++p) fwrite(lines[p], 1, info.line_bytes[p], files[p]);
    }
    vrk->end_ed_block(diffusion);
  }

  for (int p = 0; p < planes; ++p) {
    require(!ferror(files[p]) && fclose(files[p]) == 0, names[p]);
    free(lines[p]);
  }
  free(diffusion);
  free(converter);
  printf("vrk %s: %d x %d pixels in %d inks\n", vrk->get_version(), page_width, page_height, planes);
}
