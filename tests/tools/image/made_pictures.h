// PNG and JPEG files for tests, and what cameras note in them.
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>
// jpeglib.h needs <cstdio> before it.
#include <jpeglib.h>
#include <png.h>

#include "kit/bytes.h"

namespace vrk::test {

// lines: all lines of a file of some depth and type. note: adds chunks.
inline std::string made_png(unsigned width, unsigned height, const std::string& lines, int depth, int type,
                            int interlace = PNG_INTERLACE_NONE,
                            const std::function<void(png_structp, png_infop)>& note = {}) {
  std::string file;
  png_structp to = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(to);
  const auto append = [](png_structp from, png_bytep data, std::size_t size) {
    static_cast<std::string*>(png_get_io_ptr(from))->append(data, data + size);
  };
  png_set_write_fn(to, &file, append, nullptr);
  png_set_IHDR(to, info, width, height, depth, type, interlace, 0, 0);
  png_color palette[256];
  for (int i = 0; i < 256; ++i) palette[i] = {png_byte(i), png_byte(255 - i), png_byte(i / 2)};
  if (type == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(to, info, palette, 256);
  std::vector<std::uint8_t> bytes(lines.begin(), lines.end());
  std::vector<png_bytep> rows;
  for (unsigned y = 0; y < height; ++y) rows.push_back(&bytes[y * bytes.size() / height]);
  png_set_rows(to, info, rows.data());
  if (note) note(to, info);
  png_write_png(to, info, PNG_TRANSFORM_IDENTITY, nullptr);
  png_destroy_write_struct(&to, &info);
  return file;
}

// set: changes settings. note: adds markers.
inline std::string made_jpeg(unsigned width, unsigned height, const std::string& lines, int channels,
                             J_COLOR_SPACE space, const std::function<void(jpeg_compress_struct&)>& set = {},
                             const std::function<void(jpeg_compress_struct&)>& note = {}) {
  jpeg_error_mgr errors;
  jpeg_compress_struct to;
  to.err = jpeg_std_error(&errors);
  jpeg_create_compress(&to);
  unsigned char* file = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&to, &file, &size);
  to.image_width = width;
  to.image_height = height;
  to.input_components = channels;
  to.in_color_space = space;
  jpeg_set_defaults(&to);
  jpeg_set_quality(&to, 100, TRUE);
  if (set) set(to);
  jpeg_start_compress(&to, TRUE);
  if (note) note(to);
  std::vector<JSAMPLE> bytes(lines.begin(), lines.end());
  for (unsigned y = 0; y < height; ++y) {
    JSAMPROW line = &bytes[y * bytes.size() / height];
    jpeg_write_scanlines(&to, &line, 1);
  }
  jpeg_finish_compress(&to);
  jpeg_destroy_compress(&to);
  const std::string result(file, file + size);
  std::free(file);
  return result;
}

inline void write_marker(jpeg_compress_struct& to, int marker, const std::string& data) {
  jpeg_write_marker(&to, marker, reinterpret_cast<const JOCTET*>(data.data()), unsigned(data.size()));
}

// A directory of EXIF as big machines write it: tag, type and value of every field. Types: 2 for four characters, 3 for
// a number of 16 bits, 4 for one of 32 bits, 5 for a ratio that lies where the value says.
inline std::string exif_directory(std::initializer_list<std::array<unsigned, 3>> fields) {
  kit::bytes to;
  kit::put_be16(to, unsigned(fields.size()));
  for (const auto& [tag, type, value] : fields) {
    kit::put_be16(to, tag);
    kit::put_be16(to, type);
    kit::put_be32(to, type == 2 ? 4 : 1);
    kit::put_be32(to, type == 3 ? value << 16 : value);
  }
  kit::put_be32(to, 0);
  return {to.begin(), to.end()};
}
inline const std::string exif_start("MM\0\x2A\0\0\0\x08", 8);

// A camera's notes: an orientation, and dots per unit of length (2: inch, 3: cm) across; half as many down.
inline std::string exif(unsigned seen, unsigned dots, unsigned unit) {
  constexpr unsigned ratios_at = 8 + 2 + 4 * 12 + 4;
  kit::bytes ratios;
  for (const unsigned number : {dots, 1U, dots, 2U}) kit::put_be32(ratios, number);
  return exif_start +
         exif_directory({{0x112, 3, seen}, {0x11A, 5, ratios_at}, {0x11B, 5, ratios_at + 8}, {0x128, 3, unit}}) +
         std::string(ratios.begin(), ratios.end());
}

// A colour space, and by four characters the files that the camera's go together with.
inline std::string exif_of_color(unsigned space, unsigned index) {
  return exif_start + exif_directory({{0x8769, 4, 26}}) + exif_directory({{0xA001, 3, space}, {0xA005, 4, 56}}) +
         exif_directory({{1, 2, index}});
}

}  // namespace vrk::test
