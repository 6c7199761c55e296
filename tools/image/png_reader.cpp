#include <png.h>

#include <algorithm>
#include <bit>
#include <vector>

#include "tools/image/c_library.h"
#include "tools/image/exif.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {
namespace {

// Palettes and low bit depths become 8 bits, transparent pixels are blended with white, 16-bit samples stay.
class png_reader final : public image_reader {
 public:
  png_reader(input_file file, const std::string& name, std::uint64_t max_memory)
      : image_reader(name), file_(std::move(file)) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &failure_, on_error, on_warning);
    info_ = png_create_info_struct(png_);
    try {
      run_c(failure_, name_, [this] { read_header(); });
      read_notes();
      if (png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE) read_whole(max_memory);
    } catch (...) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw;
    }
  }
  ~png_reader() override { png_destroy_read_struct(&png_, &info_, nullptr); }
  png_reader(const png_reader&) = delete;
  png_reader& operator=(const png_reader&) = delete;

  void read_line(void* line) override {
    const bool last = ++lines_read_ == height_;
    if (whole_) {
      std::copy_n(&whole_[(lines_read_ - 1) * line_bytes()], line_bytes(), static_cast<std::uint8_t*>(line));
      return;
    }
    run_c(failure_, name_, [&] {
      png_read_row(png_, static_cast<png_bytep>(line), nullptr);
      if (last) png_read_end(png_, nullptr);
    });
  }

 private:
  void read_header() {
    png_set_read_fn(png_, file_.get(), read_bytes);
    png_read_info(png_, info_);
    png_set_expand(png_);
    const auto type = png_get_color_type(png_, info_);
    if ((type & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(png_, info_, PNG_INFO_tRNS) != 0) {
      png_color_16 white{};
      const int depth = png_get_bit_depth(png_, info_);
      white.red = white.green = white.blue = white.gray = png_uint_16(depth == 16 ? 0xFFFF : 0xFF);
      png_set_background(png_, &white, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
    }
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
    width_ = png_get_image_width(png_, info_);
    height_ = png_get_image_height(png_, info_);
    channels_ = png_get_channels(png_, info_);
    bits_ = png_get_bit_depth(png_, info_);
  }

  void read_notes() {
    png_uint_32 size = 0, x = 0, y = 0;
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(png_, info_, &size, &exif) != 0) {
      const exif_notes notes = read_exif(exif, size);
      dpi_ = notes.dpi;
      seen_ = notes.seen;
    }
    int unit = PNG_RESOLUTION_UNKNOWN;
    if (png_get_pHYs(png_, info_, &x, &y, &unit) == 0 || unit != PNG_RESOLUTION_METER || x == 0 || y == 0) return;
    dpi_ = {x * mm_per_inch / 1000, y * mm_per_inch / 1000};
  }

  // The last pass of an interlaced picture still changes its first line, so the whole picture is read at once.
  // Its memory is not touched before there are samples for it.
  void read_whole(std::uint64_t max_memory) {
    const std::uint64_t bytes = std::uint64_t{line_bytes()} * height_;
    require_memory("interlaced", bytes + height_ * sizeof(png_bytep), max_memory);
    whole_ = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    std::vector<png_bytep> rows(height_);
    for (std::size_t y = 0; y < height_; ++y) rows[y] = &whole_[y * line_bytes()];
    png_bytepp lines = rows.data();
    run_c(failure_, name_, [this, lines] {
      png_read_image(png_, lines);
      png_read_end(png_, nullptr);
    });
  }

  static void read_bytes(png_structp png, png_bytep to, std::size_t count) {
    auto* const file = static_cast<std::FILE*>(png_get_io_ptr(png));
    if (std::fread(to, 1, count, file) != count) png_error(png, "the file ends before the picture does");
  }
  [[noreturn]] static void on_error(png_structp png, png_const_charp text) {
    static_cast<c_failure*>(png_get_error_ptr(png))->jump(text);
  }
  static void on_warning(png_structp, png_const_charp) {}

  input_file file_;
  c_failure failure_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  unsigned lines_read_ = 0;
  std::unique_ptr<std::uint8_t[]> whole_;
};

}  // namespace

std::unique_ptr<image_reader> read_png(input_file file, const std::string& name, std::uint64_t max_memory) {
  return std::make_unique<png_reader>(std::move(file), name, max_memory);
}

}  // namespace vrk::tool
