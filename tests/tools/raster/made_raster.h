// Raster streams, written by libcups.
#pragma once

#include <cups/raster.h>

#include <cstring>
#include <functional>
#include <string>

#include "tests/samples.h"

namespace vrk::test {

struct raster_kind {
  cups_cspace_t space = CUPS_CSPACE_SRGB;
  unsigned colors = 3, bits = 8;
  cups_order_t order = CUPS_ORDER_CHUNKED;
  cups_mode_t mode = CUPS_RASTER_WRITE;
};

// A page of 300 x 150 dpi; of 300 dpi as Apple raster, which has one resolution. pixels: pixel by pixel, the colours of
// a pixel in the stream's order.
struct raster_page {
  unsigned width, height;
  samples pixels;
  std::function<void(cups_page_header2_t&)> lie = {};  // changes the header, but not what follows
};

inline cups_page_header2_t header_of(const raster_kind& kind, unsigned width, unsigned height) {
  cups_page_header2_t header{};
  const bool chunked = kind.order == CUPS_ORDER_CHUNKED;
  std::strcpy(header.MediaClass, "PwgRaster");
  header.HWResolution[0] = 300;
  header.HWResolution[1] = kind.mode == CUPS_RASTER_WRITE_APPLE ? 300 : 150;
  header.cupsWidth = width;
  header.cupsHeight = height;
  header.cupsBitsPerColor = kind.bits;
  header.cupsBitsPerPixel = kind.bits * (chunked ? kind.colors : 1);
  header.cupsBytesPerLine = (width * header.cupsBitsPerPixel + 7) / 8;
  if (kind.order == CUPS_ORDER_BANDED) header.cupsBytesPerLine *= kind.colors;
  header.cupsColorOrder = kind.order;
  header.cupsColorSpace = kind.space;
  header.cupsNumColors = kind.colors;
  return header;
}

inline void append_samples(const raster_page& page, const raster_kind& kind, unsigned y, unsigned first, unsigned step,
                           std::string& to) {
  unsigned filled = 0;
  for (unsigned i = first; i < page.width * kind.colors; i += step) {
    const unsigned value = page.pixels[y * page.width * kind.colors + i];
    if (kind.bits == 16) {
      to.append(reinterpret_cast<const char*>(&page.pixels[y * page.width * kind.colors + i]), 2);
      continue;
    }
    if (filled % 8 == 0) to += '\0';
    filled += kind.bits;
    to.back() = char(to.back() | value << ((8 - filled % 8) % 8));
  }
}

inline std::string make_raster(const std::vector<raster_page>& pages, const raster_kind& kind) {
  std::string stream;
  const auto append = [](void* to, unsigned char* bytes, std::size_t count) {
    static_cast<std::string*>(to)->append(reinterpret_cast<char*>(bytes), count);
    return ssize_t(count);
  };
  cups_raster_t* const raster = cupsRasterOpenIO(append, &stream, kind.mode);
  for (const raster_page& page : pages) {
    std::string all;
    for (unsigned c = 0; c < (kind.order == CUPS_ORDER_PLANAR ? kind.colors : 1); ++c) {
      for (unsigned y = 0; y < page.height; ++y) {
        if (kind.order == CUPS_ORDER_CHUNKED) append_samples(page, kind, y, 0, 1, all);
        if (kind.order == CUPS_ORDER_PLANAR) append_samples(page, kind, y, c, kind.colors, all);
        if (kind.order != CUPS_ORDER_BANDED) continue;
        for (unsigned b = 0; b < kind.colors; ++b) append_samples(page, kind, y, b, kind.colors, all);
      }
    }
    cups_page_header2_t header = header_of(kind, page.width, page.height);
    const unsigned line = header.cupsBytesPerLine;
    if (page.lie) page.lie(header);
    cupsRasterWriteHeader2(raster, &header);
    for (std::size_t at = 0; at < all.size(); at += line) {
      cupsRasterWritePixels(raster, reinterpret_cast<unsigned char*>(&all[at]), line);
    }
  }
  cupsRasterClose(raster);
  return stream;
}

}  // namespace vrk::test
