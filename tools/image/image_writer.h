// Pictures, written line by line.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "tools/files/output_set.h"
#include "tools/image/resolution.h"

namespace vrk::tool {

class image_writer {
 public:
  virtual ~image_writer() = default;
  virtual void write_line(const void* line) = 0;
  virtual void finish() = 0;  // after the last line
};

// The file stays where it is while it is written. dpi: noted in it, in PBM and PGM as a comment.

// What makes a PNG small: means of dots differ from pixel to pixel, so that looking for more than runs takes three
// times as long and gains nothing.
enum class png_content { drawing, means_of_dots };

// R, G, B bytes.
std::unique_ptr<image_writer> write_png(output_file& to, unsigned width, unsigned height,
                                        std::optional<resolution> dpi = {}, png_content content = png_content::drawing);

// PBM: lines of packed bits, the first pixel in the most significant bit, 1 for black.
std::unique_ptr<image_writer> write_pbm(output_file& to, unsigned width, unsigned height, resolution dpi);

// PGM: a byte per pixel, 0 for black, `white` for white.
std::unique_ptr<image_writer> write_pgm(output_file& to, unsigned width, unsigned height, unsigned white,
                                        resolution dpi);

}  // namespace vrk::tool
