// Pictures, read line by line whatever their format.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "kit/bytes.h"
#include "tools/image/orientation.h"
#include "tools/image/picture_limits.h"
#include "tools/image/resolution.h"

namespace vrk::tool {

struct page_header;  // see tools/raster/page_header.h

struct picture_colors {
  std::string profile = "sRGB";    // its description, or "inks" for amounts of the printer's own
  std::string origin = "assumed";  // or "embedded" in the file, or "named" on the command line
};

class image_reader {
 public:
  virtual ~image_reader() = default;

  unsigned width() const { return width_; }
  unsigned height() const { return height_; }
  unsigned channels() const { return channels_; }  // 1: gray, 3: R, G, B; 4: C, M, Y, K, 0 for no ink
  unsigned bits() const { return bits_; }          // per sample: 8, or 16 in the machine's byte order
  std::size_t line_bytes() const { return std::size_t{width_} * channels_ * (bits_ / 8); }
  const std::string& name() const { return name_; }

  // As the file says: pixels per inch, and how the picture is to be seen. Lines are read as they are stored.
  const std::optional<resolution>& dpi() const { return dpi_; }
  orientation seen() const { return seen_; }

  // What the file says about the samples, as an ICC profile; bytes that are none where that is damaged. Empty: nothing,
  // which stands for sRGB, or for the printer's own inks.
  const kit::bytes& profile() const { return profile_; }

  // What they were taken for in the end, for notes on the print.
  const picture_colors& colors() const { return colors_; }

  // What a raster stream says about this page; null for other pictures.
  const std::shared_ptr<const page_header>& header() const { return header_; }

  // Fills line_bytes() bytes with the next line. Throws user_error, naming the file, when the file is broken or ends
  // early; the last line checks the end of the file as well where the format has one.
  virtual void read_line(void* line) = 0;

 protected:
  explicit image_reader(std::string name) : name_(std::move(name)) {}

  // Throws user_error when a picture that is `because` needs more memory than it may.
  void require_memory(const char* because, std::uint64_t bytes, std::uint64_t most) const;

  // Throws user_error when the picture, of which all but the lines is known, is larger than it may be.
  void require_size(const picture_limits& limits) const;

  // For a profile that the file announces and does not hold.
  void note_damaged_profile() { profile_ = {0}; }

  std::string name_;  // for messages
  unsigned width_ = 0, height_ = 0, channels_ = 0, bits_ = 8;
  std::optional<resolution> dpi_{};
  orientation seen_{};
  kit::bytes profile_{};
  std::shared_ptr<const page_header> header_{};
  picture_colors colors_{};
};

struct file_closer {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};
using input_file = std::unique_ptr<std::FILE, file_closer>;

// What open_image reads, for messages.
inline constexpr const char* picture_formats = "PNG, JPEG, TIFF, WebP nor PNM (PBM, PGM, PPM, PAM)";

// PNG, JPEG, TIFF, WebP, PBM, PGM, PPM or PAM, recognised by the first byte; "-" is standard input.
std::unique_ptr<image_reader> open_image(const std::string& path, const picture_limits& limits = {});

std::unique_ptr<image_reader> read_png(input_file file, const std::string& name, const picture_limits& limits);
std::unique_ptr<image_reader> read_jpeg(input_file file, const std::string& name, const picture_limits& limits);
std::unique_ptr<image_reader> read_tiff(input_file file, const std::string& name, const picture_limits& limits);
std::unique_ptr<image_reader> read_webp(input_file file, const std::string& name, const picture_limits& limits);
std::unique_ptr<image_reader> read_pnm(input_file file, const std::string& name, const picture_limits& limits);

// The built-in sample page, as if it were a file of A4 size.
std::unique_ptr<image_reader> read_sample_page(unsigned dpi);

}  // namespace vrk::tool
