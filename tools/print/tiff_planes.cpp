#include <vrk.h>

#include <algorithm>
#include <limits>

#include "tools/image/tiff_file.h"
#include "tools/print/plane_files.h"

namespace vrk::tool {
namespace {

// Readers of TIFF expect C, M, Y, K; inks of which they know nothing come behind.
constexpr std::string_view sample_order[] = {"c", "m", "y", "k", "lc", "lm"};

class bytes_of_output final : public tiff_bytes {
 public:
  explicit bytes_of_output(output_file& file) : file_(file) {}
  std::uint64_t size() const override { return size_; }
  std::size_t read(std::uint64_t, void*, std::size_t) override { return 0; }
  void write(std::uint64_t at, const void* data, std::size_t bytes) override {
    if (at != at_) file_.seek(at);
    file_.write(data, bytes);
    at_ = at + bytes;
    size_ = std::max(size_, at_);
  }

 private:
  output_file& file_;
  std::uint64_t at_ = 0, size_ = 0;
};

// The dots of a pixel side by side, which more programs read than planes one after the other. Dots have no runs for fax
// codes or PackBits; Deflate makes them somewhat smaller, and light areas much.
class tiff_planes final : public plane_files {
 public:
  tiff_planes(output_set& to, const std::vector<plane_format>& planes, const raster& page, dot_scale finest)
      : planes_(planes), file_(to.add(tiff_planes_name)), bytes_(file_), size_(finer(page, finest)) {
    for (const plane_format& plane : planes) bits_ = std::max(bits_, plane.bits);
    for (const plane_format& plane : planes) {
      unsigned sample = 0;  // as many as there are planes before this one
      for (const plane_format& other : planes) sample += rank(other) < rank(plane);
      places_.push_back({tiff_planes_name, size_, bits_, sample});
    }
    line_bytes_ = (std::size_t{size_.width} * planes.size() * bits_ + 7) / 8;
    constexpr std::size_t strip_bytes = 1 << 17;
    strip_lines_ = unsigned(std::clamp<std::size_t>(strip_bytes / line_bytes_, 1, size_.height));
    strip_.resize(strip_lines_ * line_bytes_);
    constexpr std::uint64_t classic_bytes = 4'000'000'000;
    const char* const mode = std::uint64_t{line_bytes_} * size_.height < classic_bytes ? "w" : "w8";
    tiff_.emplace(bytes_, mode, file_.path().string(), std::numeric_limits<std::uint64_t>::max());
    write_fields();
  }

  void add_row(const std::uint8_t*, unsigned, dots& of) override {
    const unsigned strip = lines_ / strip_lines_, line = lines_ % strip_lines_;
    if (line == 0) std::fill(strip_.begin(), strip_.end(), std::uint8_t{0});
    for (std::size_t p = 0; p < planes_.size(); ++p) {
      pack_samples(of, p, planes_[p], bits_, std::size_t{*places_[p].sample} * bits_, planes_.size() * bits_,
                   &strip_[line * line_bytes_]);
    }
    if (++lines_ % strip_lines_ != 0 && lines_ != size_.height) return;
    const auto bytes = tmsize_t((line + 1) * line_bytes_);  // at once, which is several times as fast as line by line
    tiff_->require(TIFFWriteEncodedStrip(tiff_->get(), strip, strip_.data(), bytes) >= 0);
  }

  void finish() override { tiff_->close(); }

 private:
  static std::ptrdiff_t rank(const plane_format& plane) {
    return std::find(std::begin(sample_order), std::end(sample_order), plane.name) - std::begin(sample_order);
  }

  template <class... Values>
  void set(std::uint32_t field, Values... values) {
    tiff_->require(TIFFSetField(tiff_->get(), field, values...) != 0);
  }

  void write_fields() {
    const std::size_t inks = planes_.size();
    set(TIFFTAG_IMAGEWIDTH, size_.width);
    set(TIFFTAG_IMAGELENGTH, size_.height);
    set(TIFFTAG_BITSPERSAMPLE, bits_);
    set(TIFFTAG_SAMPLESPERPIXEL, unsigned(inks));
    set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    set(TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    set(TIFFTAG_ROWSPERSTRIP, strip_lines_);
    set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    set(TIFFTAG_XRESOLUTION, size_.dpi.x);
    set(TIFFTAG_YRESOLUTION, size_.dpi.y);
    set(TIFFTAG_SOFTWARE, (std::string("vrk ") + vrk_get_version()).c_str());
    set(TIFFTAG_PHOTOMETRIC, inks == 1 ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_SEPARATED);
    if (inks == 1) return;
    std::string names;  // each ends with a 0
    for (const std::string_view plane : sample_order) {
      const auto is = [&](const plane_format& of) { return of.name == plane; };
      if (std::any_of(planes_.begin(), planes_.end(), is)) names += std::string(ink_name(plane)) + '\0';
    }
    set(TIFFTAG_INKSET, inks == 4 ? INKSET_CMYK : INKSET_MULTIINK);
    set(TIFFTAG_NUMBEROFINKS, unsigned(inks));
    set(TIFFTAG_INKNAMES, unsigned(names.size()), names.c_str());
  }

  const std::vector<plane_format>& planes_;
  output_file& file_;
  bytes_of_output bytes_;
  raster size_;  // of the file
  unsigned bits_ = 1;
  std::size_t line_bytes_ = 0;
  unsigned strip_lines_ = 0;
  std::vector<std::uint8_t> strip_;
  unsigned lines_ = 0;  // so far
  std::optional<tiff_file> tiff_;
};

}  // namespace

std::unique_ptr<plane_files> open_tiff_planes(output_set& to, const std::vector<plane_format>& planes,
                                              const raster& page, dot_scale finest) {
  return std::make_unique<tiff_planes>(to, planes, page, finest);
}

}  // namespace vrk::tool
