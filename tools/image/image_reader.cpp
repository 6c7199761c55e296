#include "tools/image/image_reader.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "pictures/sample_page.h"
#include "tools/image/picture_input.h"
#include "tools/pipeline/user_error.h"
#include "tools/raster/raster_stream.h"

namespace vrk::tool {
namespace {

class sample_page_reader final : public image_reader {
 public:
  sample_page_reader(unsigned width, unsigned height, double dpi) : image_reader("sample page"), page_(width, height) {
    width_ = width;
    height_ = height;
    channels_ = 3;
    dpi_ = {dpi, dpi};
  }

  void read_line(void* line) override { page_.draw_line(next_++, static_cast<std::uint8_t*>(line)); }

 private:
  pictures::sample_page page_;
  unsigned next_ = 0;
};

}  // namespace

void image_reader::require_memory(const char* because, std::uint64_t bytes, std::uint64_t most) const {
  if (bytes <= most) return;
  const auto megabytes = [](std::uint64_t n) { return std::to_string((n + (1 << 20) - 1) >> 20) + " MB"; };
  throw user_error(name_ + ": is " + because + " and so needs " + megabytes(bytes) + " of memory, more than the " +
                   megabytes(most) + " of --max-memory");
}

void image_reader::require_size(const picture_limits& limits) const {
  if (!limits.admit(width_, height_)) {
    throw user_error(name_ + ": has " + std::to_string(width_) + " x " + std::to_string(height_) +
                     " pixels, expected " + limits.text());
  }
  constexpr unsigned lines_at_once = 4;  // of a decoder, at least
  require_memory("so wide", lines_at_once * line_bytes(), limits.memory);
}

std::unique_ptr<image_reader> read_sample_page(unsigned dpi) {
  const auto pixels = [&](double mm) { return unsigned(mm / mm_per_inch * dpi + 0.5); };
  return std::make_unique<sample_page_reader>(pixels(210), pixels(297), double(dpi));
}

picture_input open_input(const std::string& path) {
  if (path.empty()) throw user_error("the picture has no name");
  const bool standard_input = path == "-";
  const std::string name = standard_input ? "standard input" : path;
  if (!standard_input && std::filesystem::is_directory(path))
    throw user_error(name + ": is a directory, not a picture");
  input_file file(standard_input ? stdin : std::fopen(path.c_str(), "rb"));
  if (!file) throw user_error(name + ": " + std::strerror(errno));
  const int first = std::getc(file.get());
  if (first == EOF) throw user_error(name + ": is empty");
  const int second = std::getc(file.get());
  if (second != EOF) std::ungetc(second, file.get());
  std::ungetc(first, file.get());  // the second one in a row, which the system's library has room for
  return {std::move(file), name, first, second};
}

std::unique_ptr<image_reader> open_image(const std::string& path, const picture_limits& limits) {
  return read_image(open_input(path), limits);
}

std::unique_ptr<image_reader> read_image(picture_input input, const picture_limits& limits) {
  auto& [file, name, first, second] = input;
  if (begins_raster_stream(first, second)) return raster_stream(std::move(file), name, limits).next_page();
  switch (first) {
    case 0x89:
      return read_png(std::move(file), name, limits);
    case 0xFF:
      return read_jpeg(std::move(file), name, limits);
    case 'I':
    case 'M':
      return read_tiff(std::move(file), name, limits);
    case 'P':
      return read_pnm(std::move(file), name, limits);
    case 'R':
      return read_webp(std::move(file), name, limits);
    default:
      throw user_error(name + ": is neither " + picture_formats + other_formats);
  }
}

}  // namespace vrk::tool
