// Pictures, written line by line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "tools/image/output_file.h"

namespace vrk::tool {

class image_writer {
 public:
  virtual ~image_writer() = default;
  virtual void write_line(const void* line) = 0;
  virtual void keep() = 0;  // after the last line; without it the file is removed
};

// R, G, B bytes.
std::unique_ptr<image_writer> write_png(const std::filesystem::path& path, unsigned width, unsigned height);

// PBM: lines of packed bits, the first pixel in the most significant bit, 1 for black.
std::unique_ptr<image_writer> write_pbm(const std::filesystem::path& path, unsigned width, unsigned height);

// PGM: a byte per pixel, 0 for black, `white` for white.
std::unique_ptr<image_writer> write_pgm(const std::filesystem::path& path, unsigned width, unsigned height,
                                        unsigned white);

}  // namespace vrk::tool
