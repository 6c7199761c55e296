// PNG and JPEG files for tests, and what cameras note in them.
#pragma once

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

// A camera's notes in the byte order of big machines: fields whose values are numbers of 16 or 32 bits, or lie where
// their number says.
class made_exif {
 public:
  enum kind : unsigned { text = 2, number = 3, long_number = 4, ratio = 5 };
  struct field {
    unsigned tag;
    kind type;
    unsigned value, count = 1;
  };

  made_exif() {
    kit::put_text(bytes_, "MM");
    kit::put_be16(bytes_, 42);
    kit::put_be32(bytes_, 8);
  }
  // Bytes that a directory of so many fields takes.
  static constexpr unsigned size_of(unsigned fields) { return 2 + 12 * fields + 4; }
  void add(const std::vector<field>& fields) {
    kit::put_be16(bytes_, unsigned(fields.size()));
    for (const field& f : fields) {
      kit::put_be16(bytes_, f.tag);
      kit::put_be16(bytes_, f.type);
      kit::put_be32(bytes_, f.count);
      kit::put_be32(bytes_, f.type == number ? f.value << 16 : f.value);
    }
    kit::put_be32(bytes_, 0);
  }
  void add_ratio(unsigned over, unsigned under) {
    kit::put_be32(bytes_, over);
    kit::put_be32(bytes_, under);
  }
  std::string block() const { return {bytes_.begin(), bytes_.end()}; }

 private:
  kit::bytes bytes_;
};

// An orientation, and dots per unit of length (2: inch, 3: cm) across; half as many down.
inline std::string exif(unsigned seen, unsigned dots, unsigned unit) {
  constexpr unsigned ratios_at = 8 + made_exif::size_of(4);
  made_exif notes;
  notes.add({{0x112, made_exif::number, seen},
             {0x11A, made_exif::ratio, ratios_at},
             {0x11B, made_exif::ratio, ratios_at + 8},
             {0x128, made_exif::number, unit}});
  notes.add_ratio(dots, 1);
  notes.add_ratio(dots, 2);
  return notes.block();
}

// A colour space, and the files that the camera's go together with: four characters.
inline std::string exif_of_color(unsigned space, std::string_view index) {
  constexpr unsigned camera_at = 8 + made_exif::size_of(1), index_at = camera_at + made_exif::size_of(2);
  kit::bytes value(index.begin(), index.end());
  made_exif notes;
  notes.add({{0x8769, made_exif::long_number, camera_at}});
  notes.add({{0xA001, made_exif::number, space}, {0xA005, made_exif::long_number, index_at}});
  notes.add({{1, made_exif::text, unsigned(value[0] << 24 | value[1] << 16 | value[2] << 8), 4}});
  return notes.block();
}

}  // namespace vrk::test
