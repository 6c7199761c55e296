// TIFF files for tests.
#pragma once

#include <tiffio.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/samples.h"

namespace vrk::test {

struct tiff_layout {
  unsigned width, height, samples, bits;
  std::uint16_t kind;  // PhotometricInterpretation
  std::uint16_t compression = COMPRESSION_NONE;
  unsigned strip = 5;  // lines
  unsigned tile = 0;   // lines and columns; 0: strips
  bool planar = false;
  const char* mode = "w";
  std::function<void(TIFF*)> note = {};  // sets more fields
};

// all: the samples of every pixel, by turns. path: of the file that is made.
inline void make_tiff(const std::string& path, const samples& all, const tiff_layout& as) {
  TIFF* const tiff = TIFFOpen(path.c_str(), as.mode);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, as.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, as.height);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, as.samples);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, as.bits);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, as.kind);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, as.compression);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, as.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  if (as.tile != 0) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, as.tile);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, as.tile);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, as.strip);
  }
  if (as.note) as.note(tiff);

  const unsigned across = as.tile != 0 ? as.tile : as.width, down = as.tile != 0 ? as.tile : as.strip;
  const unsigned together = as.planar ? 1 : as.samples;
  std::uint32_t piece = 0;
  for (unsigned plane = 0; plane < as.samples; plane += together) {
    for (unsigned top = 0; top < as.height; top += down) {
      for (unsigned left = 0; left < as.width; left += across) {
        std::vector<std::uint8_t> bytes;
        for (unsigned y = top; y < (as.tile != 0 ? top + down : std::min(top + down, as.height)); ++y) {
          unsigned packed = 0, filled = 0;
          const auto put = [&](unsigned sample) {
            packed = packed << as.bits | sample;
            filled += as.bits;
            if (filled < 8) return;
            const auto word = std::uint16_t(packed);
            const auto* const from = reinterpret_cast<const std::uint8_t*>(&word);
            if (filled == 16) bytes.insert(bytes.end(), from, from + 2);
            if (filled == 8) bytes.push_back(std::uint8_t(packed));
            packed = filled = 0;
          };
          for (unsigned x = left; x < left + across; ++x) {
            for (unsigned s = plane; s < plane + together; ++s) {
              put(x < as.width && y < as.height ? all[(y * as.width + x) * as.samples + s] : 0);
            }
          }
          while (filled != 0) put(0);
        }
        const auto size = tmsize_t(bytes.size());
        if (as.tile != 0) TIFFWriteEncodedTile(tiff, piece++, bytes.data(), size);
        if (as.tile == 0) TIFFWriteEncodedStrip(tiff, piece++, bytes.data(), size);
      }
    }
  }
  TIFFClose(tiff);
}

}  // namespace vrk::test
