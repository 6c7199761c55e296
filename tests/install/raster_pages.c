/* The printer of examples/raster_driver.c: every page of standard input as PBM files, 1-0.pbm for its first plane. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

static uint32_t number(void) {
  uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | (uint32_t)getchar();
  return value;
}

static void refuse(const char* why) {
  fprintf(stderr, "raster_pages: %s\n", why);
  exit(1);
}

int main(void) {
  char name[40];
  for (unsigned page = 1; getchar() == 'V' && getchar() == 'P'; ++page) {
    const uint32_t width = number(), height = number(), dpi = number(), down = number(), bytes = (width + 7) / 8;
    const int planes = getchar();
    FILE* files[6];
    uint32_t lines[6] = {0};
    if (planes > 6 || getchar() != 1 || down != dpi) refuse("no planes of 1 bit with square dots");
    for (int p = 0; p < planes; ++p) {
      snprintf(name, sizeof name, "%u-%d.pbm", page, p);
      files[p] = fopen(name, "wb");
      if (files[p] == NULL) refuse(name);
      fprintf(files[p], "P4\n# %u dpi\n%u %u\n", dpi, width, height);
    }
    for (int c = getchar(); c != 'E'; c = getchar()) {
      const int plane = getchar();
      const uint32_t count = number();
      if ((c != 'L' && c != 'B') || plane >= planes) refuse("neither line nor blank lines");
      lines[plane] += c == 'B' ? count : 1;
      for (uint32_t i = 0; c == 'B' && i < count * bytes; ++i) putc(0, files[plane]);
      for (uint32_t i = 0; c == 'L' && i < count;) {
        const int code = getchar();
        const int repeated = code > 128 ? getchar() : -1;
        for (int n = code > 128 ? 257 - code : code + 1; n > 0; --n)
          putc(code > 128 ? repeated : getchar(), files[plane]);
        i += code > 128 ? 2 : (uint32_t)code + 2;
      }
    }
    for (int p = 0; p < planes; ++p) {
      if (lines[p] != height || ftell(files[p]) < (long)(height * bytes)) refuse("a plane of another height");
      fclose(files[p]);
    }
  }
  return 0;
}
