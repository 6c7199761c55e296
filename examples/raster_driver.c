/* A raster driver: CUPS, PWG or Apple raster from standard input, the language of an invented printer to standard
 * output. Start a driver of your own from this file: what is your printer's is in begin_page, send_line and end_page.
 *
 * usage: raster_driver GRID.csc2 SPREAD.edtb LEVELS.edpr <pages.ras >printer
 *
 * The printer takes, for every page,
 *   "VP", width, height, dpi across, dpi down (4 bytes each, the highest first), number of planes, bits per dot (1
 * each), for every plane, from the top down, "L", plane (1), bytes that follow (4) and a line that is packed by
 * PackBits, or "B", plane (1), a number of blank lines (4), "E". */
#include <cups/raster.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vrk.h>

enum { most_planes = 6, margin = 16 };

static void require(int ok, const char* what) {
  if (ok) return;
  fprintf(stderr, "ERROR: raster_driver: %s\n", what); /* as a print system reads it */
  exit(1);
}

static void* memory(size_t size, const char* whose) {
  void* const block = malloc(size);
  require(size != 0 && block != NULL, whose);
  return block;
}

typedef struct {
  uint8_t* bytes;
  uint32_t size;
} table;

static table load(const char* path) {
  table t = {NULL, 0};
  FILE* const file = fopen(path, "rb");
  require(file != NULL && fseek(file, 0, SEEK_END) == 0, path);
  t.size = (uint32_t)ftell(file);
  rewind(file);
  t.bytes = memory(t.size, path);
  require(fread(t.bytes, 1, t.size, file) == t.size, path);
  fclose(file);
  return t;
}

/* The printer's language. */

static void send_number(uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) putchar((int)(value >> shift & 0xFF));
}

static void begin_page(const cups_page_header2_t* header, const vrk_ht_info* info) {
  fputs("VP", stdout);
  send_number(header->cupsWidth);
  send_number(header->cupsHeight);
  send_number(header->HWResolution[0]);
  send_number(header->HWResolution[1]);
  putchar((int)info->plane_count);
  putchar((int)info->plane_bits[0]);
}

static void end_page(void) {
  putchar('E');
  require(fflush(stdout) == 0 && !ferror(stdout), "standard output takes no more");
}

/* PackBits: a count of 0 to 127 and one more bytes than that, or -1 to -127 and a byte that is repeated one time more
 * than that. packed: room for twice the bytes of the line. */
static uint32_t pack_line(const uint8_t* line, uint32_t bytes, uint8_t* packed) {
  uint8_t* to = packed;
  for (uint32_t at = 0; at < bytes;) {
    uint32_t same = 1, other = 1;
    while (at + same < bytes && same < 128 && line[at + same] == line[at]) ++same;
    if (same > 1) {
      *to++ = (uint8_t)(257 - same);
      *to++ = line[at];
      at += same;
      continue;
    }
    while (at + other < bytes && other < 128 && (at + other + 1 == bytes || line[at + other] != line[at + other + 1])) {
      ++other;
    }
    *to++ = (uint8_t)(other - 1);
    memcpy(to, line + at, other);
    to += other;
    at += other;
  }
  return (uint32_t)(to - packed);
}

static int is_blank(const uint8_t* line, size_t bytes) {
  return line[0] == 0 && memcmp(line, line + 1, bytes - 1) == 0;
}

static void send_line(int plane, const uint8_t* line, uint32_t bytes, uint8_t* packed, uint32_t* blank, int last) {
  const int bare = is_blank(line, bytes);
  if (bare) ++*blank;
  if (*blank != 0 && (!bare || last)) {
    putchar('B');
    putchar(plane);
    send_number(*blank);
    *blank = 0;
  }
  if (bare) return;
  const uint32_t count = pack_line(line, bytes, packed);
  putchar('L');
  putchar(plane);
  send_number(count);
  fwrite(packed, 1, count, stdout);
}

/* The pages. */

/* What this driver understands: gray, black or RGB, 8 bits, the colours of a pixel side by side. PWG and Apple raster
 * are always so; a CUPS queue sends what the driver's PPD asks for. Returns the colours of a pixel. */
static uint32_t check_header(const cups_page_header2_t* header) {
  const cups_cspace_t space = header->cupsColorSpace;
  const int rgb = space == CUPS_CSPACE_RGB || space == CUPS_CSPACE_SRGB;
  const uint32_t colors = rgb ? 3 : 1;
  require(rgb || space == CUPS_CSPACE_W || space == CUPS_CSPACE_SW || space == CUPS_CSPACE_K,
          "the page is neither gray nor RGB");
  require(header->cupsBitsPerColor == 8 && header->cupsColorOrder == CUPS_ORDER_CHUNKED,
          "the page does not have 8 bits a colour, side by side");
  require(header->cupsWidth >= 1 && header->cupsWidth <= 100000 && header->cupsHeight >= 1 &&
              header->cupsBytesPerLine == header->cupsWidth * colors,
          "the page has a header that does not hold together");
  return colors;
}

/* From the page's samples to R, G, B. */
static void expand_line(const cups_page_header2_t* header, const uint8_t* line, uint8_t* rgb) {
  const uint8_t invert = header->cupsColorSpace == CUPS_CSPACE_K ? 0xFF : 0;
  for (uint32_t x = 0; x < header->cupsWidth; ++x) memset(rgb + 3 * x, line[x] ^ invert, 3);
}

/* The rims of a page. Error that leaves a block is lost, and the first line has none from above, which would leave the
 * outer columns and the first lines of a light tint bare. So the edges of a line of inks go on in a margin, whose dots
 * are dropped, and the first line with ink comes after others like it: as many as give every column ink for one dot. */

static void add_margins(uint8_t* inks, uint32_t width) {
  for (uint32_t x = 0; x < margin; ++x) {
    memcpy(inks + 4 * x, inks + 4 * margin, 4);
    memcpy(inks + 4 * (margin + width + x), inks + 4 * (margin + width - 1), 4);
  }
}

/* For dots of two levels. */
static uint32_t lines_ahead(const uint8_t* inks, uint32_t samples) {
  uint32_t lines = 0;
  for (uint32_t i = 0; i < samples; ++i) {
    const uint32_t ink = inks[i] < 128 ? inks[i] : 255u - inks[i]; /* or paper, where there is little of it */
    if (ink != 0 && 255 / ink > lines) lines = 255 / ink;
  }
  return lines;
}

static void print_page(cups_raster_t* raster, const cups_page_header2_t* header, void* converter, table spread,
                       table levels) {
  const uint32_t width = header->cupsWidth, height = header->cupsHeight, colors = check_header(header);

  /* Matrices are laid out from column 0 of the handle; with this many columns in front, from that of the page. */
  const uint32_t matrix_width = levels.size > 14 && levels.bytes[14] != 0 ? levels.bytes[14] : 1;
  const uint32_t unused = (margin + matrix_width - 1) / matrix_width * matrix_width - margin;
  const uint32_t block = margin + width + margin, columns = unused + block;

  /* Tables are chosen by the page where a printer has several: by header->MediaType, say. */
  const uint32_t size = vrk_create_ed(columns, spread.size, spread.bytes, levels.size, levels.bytes, 0, NULL);
  require(size != 0, "the error diffusion tables were refused");
  void* const halftone = memory(size, "the halftone");
  require(vrk_create_ed(columns, spread.size, spread.bytes, levels.size, levels.bytes, 0, halftone) != 0,
          "error diffusion was not built");
  vrk_ht_info info;
  vrk_query_ed_info(halftone, &info);
  require(info.plane_count == 4 && info.same_line_bytes, "the tables are not for four inks in dots of one size");
  const uint32_t bits = info.plane_bits[0], bytes = (bits * width + 7) / 8, spare = 8 * bytes - bits * width;

  uint8_t* lines[most_planes] = {NULL};
  uint32_t blank[most_planes] = {0};
  for (uint32_t p = 0; p < info.plane_count; ++p) lines[p] = memory(info.line_bytes[p], "a line of dots");
  uint8_t* const packed = memory((size_t)2 * info.line_bytes[0], "a packed line");
  uint8_t *const line = memory((size_t)width * colors, "a line"), *const inks = memory((size_t)block * 4, "inks");
  uint8_t* const rgb = colors == 3 ? line : memory((size_t)width * 3, "a line of colours");

  begin_page(header, &info);
  require(vrk_start_ed_block(halftone, block, unused, 0) != 0, "the block does not fit the line");
  int has_ink = 0;
  for (uint32_t y = 0; y < height; ++y) {
    require(cupsRasterReadPixels(raster, line, width * colors) == width * colors, "the stream breaks off");
    if (colors == 1) expand_line(header, line, rgb);
    vrk_xform_csc2(converter, rgb, width, inks + 4 * margin);
    add_margins(inks, width);
    uint32_t runs = 1;
    if (!has_ink && !is_blank(inks, (size_t)block * 4)) {
      has_ink = 1;
      runs += lines_ahead(inks, block * 4);
      vrk_start_ed_block(halftone, block, unused, y + 1 - runs); /* below 0 the numbers go on from the highest ones */
    }
    while (runs-- != 0) vrk_exec_ed(halftone, inks, lines[0], lines[1], lines[2], lines[3], NULL, NULL);
    for (uint32_t p = 0; p < info.plane_count; ++p) {
      uint8_t* const dots = lines[p] + bits * margin / 8;
      dots[bytes - 1] &= (uint8_t)(0xFF << spare);
      send_line((int)p, dots, bytes, packed, &blank[p], y + 1 == height);
    }
  }
  vrk_end_ed_block(halftone);
  end_page();

  for (uint32_t p = 0; p < info.plane_count; ++p) free(lines[p]);
  if (rgb != line) free(rgb);
  free(line);
  free(inks);
  free(packed);
  free(halftone);
}

int main(int argc, char** argv) {
  require(argc == 4, "usage: raster_driver GRID.csc2 SPREAD.edtb LEVELS.edpr <pages.ras >printer");
  const table grid = load(argv[1]), spread = load(argv[2]), levels = load(argv[3]);

  /* Every handle lies in memory of the driver: the size is asked for first. */
  const uint32_t size = vrk_create_csc2(grid.size, grid.bytes, 3, 0, NULL);
  require(size != 0, "the colour table was refused");
  void* const converter = memory(size, "the converter");
  require(vrk_create_csc2(grid.size, grid.bytes, 3, 0, converter) != 0, "the colour table was not built");
  vrk_set_csc2_rgb(converter, 0); /* R, G, B */

  cups_raster_t* const raster = cupsRasterOpen(STDIN_FILENO, CUPS_RASTER_READ);
  require(raster != NULL, "standard input is no raster stream");
  cups_page_header2_t header;
  unsigned pages = 0;
  while (cupsRasterReadHeader2(raster, &header)) {
    print_page(raster, &header, converter, spread, levels);
    fprintf(stderr, "PAGE: %u 1\n", ++pages);
  }
  cupsRasterClose(raster);
  require(pages != 0, "the stream has no page");
  free(converter);
  free(grid.bytes);
  free(spread.bytes);
  free(levels.bytes);
  return 0;
}
