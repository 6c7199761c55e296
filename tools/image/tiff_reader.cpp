#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "tools/image/alpha.h"
#include "tools/image/image_reader.h"
#include "tools/image/seekable_file.h"
#include "tools/image/tiff_file.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

class bytes_of_file final : public tiff_bytes {
 public:
  bytes_of_file(input_file file, const std::string& name) : file_(std::move(file), name) {}
  std::uint64_t size() const override { return file_.size(); }
  std::size_t read(std::uint64_t at, void* to, std::size_t bytes) override { return file_.read(at, to, bytes); }
  void write(std::uint64_t, const void*, std::size_t) override {}

 private:
  seekable_file file_;
};

// Lines come one by one out of strips, or out of a row of tiles, which is decoded at once. Samples lie pixel by pixel,
// or in a plane for each. Those of up to 8 bits become 8 bits, palettes RGB, transparent pixels are blended with white.
class tiff_reader final : public image_reader {
 public:
  tiff_reader(input_file file, const std::string& name, const picture_limits& limits)
      : image_reader(name), bytes_(std::move(file), name), limits_(limits) {
    check_magic();
    open();
    choose_picture();
    read_colors();
    read_notes();
    read_layout();
    if (first().cut_short()) first().require(false);
  }

  void read_line(void* line) override {
    read_samples();
    bits_ == 16 ? convert(static_cast<std::uint16_t*>(line)) : convert(static_cast<std::uint8_t*>(line));
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const { throw user_error(name_ + ": " + why); }

  const tiff_file& first() const { return *files_.front(); }

  // The value of a field, or its default.
  template <class Value>
  std::optional<Value> field(std::uint32_t tag) const {
    Value value{};
    if (TIFFGetFieldDefaulted(first().get(), tag, &value) == 0) return {};
    return value;
  }
  unsigned number(std::uint32_t tag) const { return field<std::uint16_t>(tag).value_or(0); }

  void check_magic() {
    char magic[4] = "";
    if (bytes_.read(0, magic, sizeof magic) < sizeof magic) refuse("the file ends before the picture does");
    for (const char* const known : {"II*\0", "MM\0*", "II+\0", "MM\0+"}) {
      if (std::memcmp(magic, known, sizeof magic) == 0) return;
    }
    refuse("is neither " + std::string(picture_formats));
  }

  // Without memory maps, which end the program when another one makes the file shorter.
  void open() { files_.push_back(std::make_unique<tiff_file>(bytes_, "rm", name_, limits_.memory)); }

  // Smaller copies and masks are no pictures of their own.
  void choose_picture() {
    tiff_file& file = *files_.front();
    unsigned pictures = 0;
    do {
      const std::uint32_t lesser = FILETYPE_REDUCEDIMAGE | FILETYPE_MASK;
      if ((field<std::uint32_t>(TIFFTAG_SUBFILETYPE).value_or(0) & lesser) != 0) continue;
      if (++pictures == 1) picture_ = TIFFCurrentDirectory(file.get());
    } while (pictures < 2 && TIFFReadDirectory(file.get()) != 0);
    if (pictures == 0) refuse("holds only a smaller copy of a picture, or a mask, expected a picture");
    if (pictures > 1) refuse("holds more than one picture, expected one");
    file.forget_failure();  // behind the picture
    file.require(TIFFSetDirectory(file.get(), picture_) != 0);
  }

  // What the samples of a pixel are.
  void read_colors() {
    const unsigned kind = field<std::uint16_t>(TIFFTAG_PHOTOMETRIC).value_or(unknown);
    const bool jpeg = number(TIFFTAG_COMPRESSION) == COMPRESSION_JPEG;
    const bool inks = kind == PHOTOMETRIC_SEPARATED;
    jpeg_colors_ = kind == PHOTOMETRIC_YCBCR && jpeg;
    palette_ = kind == PHOTOMETRIC_PALETTE;
    const bool rgb = kind == PHOTOMETRIC_RGB || jpeg_colors_;
    const bool gray = kind == PHOTOMETRIC_MINISWHITE || kind == PHOTOMETRIC_MINISBLACK;
    if (kind == unknown) refuse("does not say what its samples mean (PhotometricInterpretation)");
    if (!inks && !palette_ && !rgb && !gray) {
      refuse("holds neither gray, RGB, a palette nor CMYK: its PhotometricInterpretation is " + std::to_string(kind));
    }
    if (inks && number(TIFFTAG_INKSET) != INKSET_CMYK) refuse("holds inks of its own, expected C, M, Y, K");
    const unsigned format = number(TIFFTAG_SAMPLEFORMAT);
    if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID) {
      refuse("has samples that are no whole numbers from 0 up");
    }
    stored_bits_ = number(TIFFTAG_BITSPERSAMPLE);
    if (stored_bits_ != 1 && stored_bits_ != 2 && stored_bits_ != 4 && stored_bits_ != 8 && stored_bits_ != 16) {
      refuse("has samples of " + std::to_string(stored_bits_) + " bits, expected 1, 2, 4, 8 or 16");
    }
    bits_ = stored_bits_ == 16 && !palette_ ? 16 : 8;
    channels_ = inks ? 4 : gray ? 1 : 3;
    stored_ = number(TIFFTAG_SAMPLESPERPIXEL);
    const unsigned colors = palette_ ? 1 : channels_;
    if (stored_ < colors) {
      refuse("has " + std::to_string(stored_) + " samples a pixel, expected " + std::to_string(colors));
    }
    for (unsigned sample = 0; sample < colors; ++sample) used_.push_back(sample);
    find_alpha(colors);
    grows_to_white_ = rgb || kind == PHOTOMETRIC_MINISBLACK;
    palette_ ? read_palette() : make_levels(kind == PHOTOMETRIC_MINISWHITE);
  }

  // The first sample behind the colours that says how much a pixel covers. Others are not for printing.
  void find_alpha(unsigned colors) {
    std::uint16_t count = 0;
    const std::uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(first().get(), TIFFTAG_EXTRASAMPLES, &count, &kinds);
    for (unsigned i = 0; i < count && colors + i < stored_ && alpha_ == alpha::none; ++i) {
      if (kinds[i] == EXTRASAMPLE_UNSPECIFIED) continue;
      alpha_ = kinds[i] == EXTRASAMPLE_ASSOCALPHA && !palette_ ? alpha::multiplied : alpha::apart;
      used_.push_back(colors + i);
    }
  }

  unsigned full() const { return bits_ == 16 ? 0xFFFF : 0xFF; }
  unsigned stored_full() const { return (1U << stored_bits_) - 1; }

  void make_levels(bool inverted) {
    std::vector<std::uint16_t> levels(stored_full() + 1);
    for (unsigned sample = 0; sample < levels.size(); ++sample) {
      levels[inverted ? stored_full() - sample : sample] = std::uint16_t(sample * (full() / stored_full()));
    }
    levels_.push_back(std::move(levels));
  }

  // 16-bit colours; some old programs have written 8 bits.
  void read_palette() {
    std::uint16_t* colors[3] = {};
    if (TIFFGetField(first().get(), TIFFTAG_COLORMAP, &colors[0], &colors[1], &colors[2]) == 0) {
      refuse("has no colours for its palette");
    }
    const std::size_t count = stored_full() + 1;
    const bool narrow = std::all_of(std::begin(colors), std::end(colors), [&](const std::uint16_t* color) {
      return std::all_of(color, color + count, [](unsigned level) { return level < 256; });
    });
    for (const std::uint16_t* const color : colors) {
      std::vector<std::uint16_t>& levels = levels_.emplace_back(color, color + count);
      if (narrow) continue;
      for (std::uint16_t& level : levels) level = std::uint16_t((level + 128U) / 257);
    }
  }

  void read_notes() {
    seen_ = exif_orientation(number(TIFFTAG_ORIENTATION));
    const double unit = number(TIFFTAG_RESOLUTIONUNIT) == RESUNIT_CENTIMETER ? mm_per_inch / 10 : 1;
    const resolution dpi{field<float>(TIFFTAG_XRESOLUTION).value_or(0) * unit,
                         field<float>(TIFFTAG_YRESOLUTION).value_or(0) * unit};
    const bool known = number(TIFFTAG_RESOLUTIONUNIT) != RESUNIT_NONE && std::isfinite(dpi.x) && std::isfinite(dpi.y);
    if (known && dpi.x > 0 && dpi.y > 0) dpi_ = dpi;
    std::uint32_t size = 0;
    const std::uint8_t* profile = nullptr;
    if (TIFFGetField(first().get(), TIFFTAG_ICCPROFILE, &size, &profile) != 0) profile_.assign(profile, profile + size);
  }

  void read_layout() {
    width_ = field<std::uint32_t>(TIFFTAG_IMAGEWIDTH).value_or(0);
    height_ = field<std::uint32_t>(TIFFTAG_IMAGELENGTH).value_or(0);
    require_size(limits_);
    planar_ = stored_ > 1 && number(TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE;
    tiled_ = TIFFIsTiled(first().get()) != 0;
    // Decoding goes on from line to line only in the strip that was read last.
    while (planar_ && !tiled_ && files_.size() < used_.size()) {
      open();
      files_.back()->require(TIFFSetDirectory(files_.back()->get(), picture_) != 0);
    }
    for (const auto& file : files_) {
      if (jpeg_colors_) file->require(TIFFSetField(file->get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB) != 0);
    }
    piece_width_ = width_;
    if (tiled_) {
      piece_width_ = field<std::uint32_t>(TIFFTAG_TILEWIDTH).value_or(0);
      piece_lines_ = field<std::uint32_t>(TIFFTAG_TILELENGTH).value_or(0);
      if (piece_width_ == 0 || piece_lines_ == 0) refuse("is damaged: its tiles have no pixels");
    }
    columns_ = (width_ - 1) / piece_width_ + 1;
    take_memory();
  }

  void take_memory() {
    TIFF* const tiff = first().get();
    const std::uint64_t bytes = tiled_ ? TIFFTileSize64(tiff) : TIFFScanlineSize64(tiff);
    first().require(bytes != 0);
    const char* const because = tiled_ ? "stored in large tiles" : "stored in large strips";
    require_memory(because, bytes, limits_.memory);
    std::uint64_t stored = 0;  // of the largest strip or tile
    const std::uint32_t count = tiled_ ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
    for (std::uint32_t i = 0; i < count; ++i) stored = std::max(stored, TIFFGetStrileByteCount(tiff, i));
    const std::uint64_t band = bytes * columns_ * (planar_ ? used_.size() : 1);
    require_memory(because, band + std::min(stored, bytes_.size()) * files_.size(), limits_.memory);
    piece_bytes_ = std::size_t(bytes);
    band_.resize(std::size_t(band));
    row_.resize(std::size_t{width_} * used_.size());
  }

  // Decodes line y, or the row of tiles that begins with it, plane by plane.
  void read_band(unsigned y) {
    std::uint8_t* to = band_.data();
    for (std::size_t plane = 0; plane < (planar_ ? used_.size() : 1); ++plane) {
      const auto sample = std::uint16_t(planar_ ? used_[plane] : 0);
      for (unsigned column = 0; column < columns_; ++column, to += piece_bytes_) {
        const tiff_file& file = *files_[tiled_ ? 0 : plane];
        if (!tiled_) {
          file.require(TIFFReadScanline(file.get(), to, y, sample) == 1);
          continue;
        }
        const std::uint32_t tile = TIFFComputeTile(file.get(), column * piece_width_, y, 0, sample);
        file.require(TIFFReadEncodedTile(file.get(), tile, to, tmsize_t(piece_bytes_)) >= 0);
      }
    }
  }

  // The samples of the next line that are used, pixel by pixel, as they are stored.
  void read_samples() {
    const unsigned y = lines_read_++;
    if (y % piece_lines_ == 0) read_band(y);
    const std::size_t line_at = y % piece_lines_ * (piece_bytes_ / piece_lines_);
    for (std::size_t i = 0; i < used_.size(); ++i) {
      const std::uint8_t* from = &band_[(planar_ ? i * columns_ : 0) * piece_bytes_ + line_at];
      for (unsigned left = 0; left < width_; left += piece_width_, from += piece_bytes_) {
        unpack(from, i, std::min(piece_width_, width_ - left), &row_[left * used_.size() + i]);
      }
    }
  }

  void unpack(const std::uint8_t* from, std::size_t which, unsigned pixels, std::uint16_t* to) const {
    const std::size_t step = planar_ ? 1 : stored_;
    std::size_t at = planar_ ? 0 : used_[which];
    for (unsigned x = 0; x < pixels; ++x, at += step, to += used_.size()) {
      if (stored_bits_ == 8) {
        *to = from[at];
      } else if (stored_bits_ == 16) {
        std::memcpy(to, from + 2 * at, 2);
      } else {
        const std::size_t bit = at * stored_bits_;
        *to = std::uint16_t(from[bit / 8] >> (8 - stored_bits_ - bit % 8) & stored_full());
      }
    }
  }

  template <class Sample>
  void convert(Sample* to) const {
    const std::uint16_t* from = row_.data();
    const unsigned paper = channels_ == 4 ? 0 : full();
    for (unsigned x = 0; x < width_; ++x, from += used_.size()) {
      const unsigned share = alpha_ == alpha::none ? stored_full() : from[used_.size() - 1];
      for (unsigned c = 0; c < channels_; ++c) {
        unsigned level = palette_ ? levels_[c][from[0]] : levels_[0][from[c]];
        if (alpha_ == alpha::apart) {
          level = over_paper(level, paper, share, stored_full());
        } else if (alpha_ == alpha::multiplied && grows_to_white_) {
          level = std::min(full(), level + (stored_full() - share) * (full() / stored_full()));
        }
        *to++ = Sample(level);
      }
    }
  }

  static constexpr unsigned unknown = std::numeric_limits<std::uint16_t>::max();

  bytes_of_file bytes_;
  picture_limits limits_;
  std::vector<std::unique_ptr<tiff_file>> files_;  // one, or one for each plane
  tdir_t picture_ = 0;                             // among those of the file

  // A pixel as it is stored, and the channels that it becomes.
  unsigned stored_ = 0, stored_bits_ = 0;  // samples, and bits of each
  bool palette_ = false, jpeg_colors_ = false, grows_to_white_ = false;
  enum class alpha { none, apart, multiplied } alpha_ = alpha::none;
  std::vector<unsigned> used_;                      // samples: of colour, and alpha
  std::vector<std::vector<std::uint16_t>> levels_;  // of every stored sample; with a palette, for each channel

  // Pieces are tiles, or lines of strips.
  bool planar_ = false, tiled_ = false;
  unsigned piece_width_ = 0, piece_lines_ = 1, columns_ = 1;
  std::size_t piece_bytes_ = 0;
  unsigned lines_read_ = 0;
  std::vector<std::uint8_t> band_;  // one row of pieces, of each plane
  std::vector<std::uint16_t> row_;  // one line
};

}  // namespace

std::unique_ptr<image_reader> read_tiff(input_file file, const std::string& name, const picture_limits& limits) {
  return std::make_unique<tiff_reader>(std::move(file), name, limits);
}

}  // namespace vrk::tool
