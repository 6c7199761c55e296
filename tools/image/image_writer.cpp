#include "tools/image/image_writer.h"

#include <png.h>
#include <zlib.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "tools/image/c_library.h"

namespace vrk::tool {
namespace {

class png_writer final : public image_writer {
 public:
  png_writer(output_file& to, unsigned width, unsigned height, std::optional<resolution> dpi, png_content content)
      : file_(to) {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &failure_, on_error, on_warning);
    info_ = png_create_info_struct(png_);
    try {
      run_c(failure_, file_.path().string(), [&] {
        png_set_write_fn(png_, this, write_bytes, nullptr);
        png_set_compression_level(png_, 3);
        if (content == png_content::means_of_dots) {
          png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
          png_set_compression_strategy(png_, Z_RLE);
        }
        png_set_IHDR(png_, info_, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_sRGB(png_, info_, PNG_sRGB_INTENT_PERCEPTUAL);
        if (dpi) png_set_pHYs(png_, info_, per_metre(dpi->x), per_metre(dpi->y), PNG_RESOLUTION_METER);
        png_write_info(png_, info_);
      });
    } catch (...) {
      png_destroy_write_struct(&png_, &info_);
      throw;
    }
  }
  ~png_writer() override { png_destroy_write_struct(&png_, &info_); }
  png_writer(const png_writer&) = delete;
  png_writer& operator=(const png_writer&) = delete;

  void write_line(const void* line) override {
    run_c(failure_, file_.path().string(), [&] { png_write_row(png_, static_cast<png_const_bytep>(line)); });
  }
  void finish() override {
    run_c(failure_, file_.path().string(), [this] { png_write_end(png_, info_); });
  }

 private:
  static png_uint_32 per_metre(double dpi) { return png_uint_32(dpi * 1000 / mm_per_inch + 0.5); }
  static void write_bytes(png_structp png, png_bytep data, std::size_t bytes) {
    auto* const self = static_cast<png_writer*>(png_get_io_ptr(png));
    try {
      self->file_.write(data, bytes);
      return;
    } catch (const user_error&) {
    }
    png_error(png, std::strerror(errno));
  }
  [[noreturn]] static void on_error(png_structp png, png_const_charp text) {
    static_cast<c_failure*>(png_get_error_ptr(png))->jump(text);
  }
  static void on_warning(png_structp, png_const_charp) {}

  output_file& file_;
  c_failure failure_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
};

class pnm_writer final : public image_writer {
 public:
  pnm_writer(output_file& to, const std::string& header, std::size_t line_bytes) : file_(to), line_bytes_(line_bytes) {
    file_.write(header);
  }
  void write_line(const void* line) override { file_.write(line, line_bytes_); }
  void finish() override {}

 private:
  output_file& file_;
  std::size_t line_bytes_;
};

// Up to the two numbers that all forms have.
std::string pnm_header(const char* magic, unsigned width, unsigned height, resolution dpi) {
  return std::string(magic) + "\n# " + text_of(dpi) + " dpi\n" + std::to_string(width) + " " + std::to_string(height) +
         "\n";
}

}  // namespace

std::unique_ptr<image_writer> write_png(output_file& to, unsigned width, unsigned height, std::optional<resolution> dpi,
                                        png_content content) {
  return std::make_unique<png_writer>(to, width, height, dpi, content);
}

std::unique_ptr<image_writer> write_pbm(output_file& to, unsigned width, unsigned height, resolution dpi) {
  return std::make_unique<pnm_writer>(to, pnm_header("P4", width, height, dpi), (std::size_t{width} + 7) / 8);
}

std::unique_ptr<image_writer> write_pgm(output_file& to, unsigned width, unsigned height, unsigned white,
                                        resolution dpi) {
  const std::string header = pnm_header("P5", width, height, dpi) + std::to_string(white) + "\n";
  return std::make_unique<pnm_writer>(to, header, width);
}

}  // namespace vrk::tool
