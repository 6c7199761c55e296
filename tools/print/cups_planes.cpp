#include <cups/raster.h>

#include <algorithm>
#include <exception>

#include "tools/files/spool.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/bit_rows.h"
#include "tools/print/plane_files.h"
#include "tools/print/raster_header.h"

namespace vrk::tool {
namespace {

class cups_planes final : public plane_files {
 public:
  // mode: of libcups. header: all but the bytes of a line. places: of each plane among the samples.
  cups_planes(output_set& to, const char* name, cups_mode_t mode, const std::vector<plane_format>& planes,
              const raster& size, const cups_page_header2_t& header, const std::vector<unsigned>& places)
      : planes_(planes), file_(to.add(name)), header_(header) {
    const unsigned bits = header.cupsBitsPerColor;
    for (std::size_t p = 0; p < planes.size(); ++p) places_.push_back({name, size, bits, places[p]});
    row_bytes_ = (std::size_t{size.width} * header.cupsBitsPerPixel + 7) / 8;
    const bool banded = header.cupsColorOrder == CUPS_ORDER_BANDED;
    line_.resize(row_bytes_ * (header.cupsColorOrder == CUPS_ORDER_CHUNKED ? 1 : planes.size()));
    header_.cupsBytesPerLine = unsigned(banded ? line_.size() : row_bytes_);
    if (header.cupsColorOrder == CUPS_ORDER_PLANAR) later_ = std::vector<spool>(planes.size() - 1);
    const dot_scale first = planes[0].scale;
    as_packed_ = bits == 1 && mixes_bits(header.cupsBitsPerPixel) &&
                 std::ranges::all_of(
                     planes, [&](const plane_format& p) { return p.scale.x == first.x && p.scale.y == first.y; });
    raster_.reset(cupsRasterOpenIO(give, this, mode));
    check(raster_ != nullptr && cupsRasterWriteHeader2(raster_.get(), &header_) != 0);
  }

  void add_row(const std::uint8_t* packed, unsigned row, dots& of) override {
    if (as_packed_) {
      mix_row(packed, row, of);
    } else {
      pack_row(of);
    }
    write(line_.data());
    for (std::size_t i = 0; i < later_.size(); ++i) later_[i].append(&line_[(i + 1) * row_bytes_], row_bytes_);
  }

  void finish() override {
    for (const spool& plane : later_) {
      for (unsigned y = 0; y < header_.cupsHeight; ++y) {
        plane.read(std::uint64_t{y} * row_bytes_, line_.data(), row_bytes_);
        write(line_.data());
      }
    }
    raster_.reset();
    check(true);
  }

 private:
  // libcups cannot be left by an exception.
  static ssize_t give(void* self, unsigned char* bytes, std::size_t count) {
    auto& to = *static_cast<cups_planes*>(self);
    try {
      to.file_.write(bytes, count);
      return ssize_t(count);
    } catch (...) {
      to.failure_ = std::current_exception();
      return -1;
    }
  }
  void check(bool done) const {
    if (failure_) std::rethrow_exception(failure_);
    if (!done) throw user_error(file_.path().string() + ": libcups cannot write such a page");
  }

  // Where dots have one bit, as they lie in the halftone's lines.
  void mix_row(const std::uint8_t* packed, unsigned row, dots& of) {
    std::vector<const std::uint8_t*> rows(planes_.size());
    for (std::size_t p = 0; p < rows.size(); ++p) rows[*places_[p].sample] = of.packed_line(packed, row, p);
    if (header_.cupsColorOrder == CUPS_ORDER_CHUNKED) {
      return mix_bits(rows, header_.cupsWidth, header_.cupsBitsPerPixel, line_.data());
    }
    for (std::size_t p = 0; p < rows.size(); ++p) mix_bits({rows[p]}, header_.cupsWidth, 1, &line_[p * row_bytes_]);
  }

  void pack_row(dots& of) {
    const unsigned bits = header_.cupsBitsPerColor, pixel = header_.cupsBitsPerPixel;
    const bool mixed = header_.cupsColorOrder == CUPS_ORDER_CHUNKED;
    const std::size_t unused = mixed ? pixel - planes_.size() * bits : 0;  // in front of the samples of a pixel
    std::fill(line_.begin(), line_.end(), std::uint8_t{0});
    for (std::size_t p = 0; p < planes_.size(); ++p) {
      const std::size_t place = *places_[p].sample;
      pack_samples(of, p, planes_[p], bits, mixed ? unused + place * bits : 0, pixel,
                   &line_[mixed ? 0 : place * row_bytes_]);
    }
  }

  void write(std::uint8_t* line) {
    check(cupsRasterWritePixels(raster_.get(), line, header_.cupsBytesPerLine) == header_.cupsBytesPerLine);
  }

  const std::vector<plane_format>& planes_;
  output_file& file_;
  cups_page_header2_t header_;
  bool as_packed_;                  // the dots are those of the halftone's lines
  std::size_t row_bytes_ = 0;       // of one plane, or of all where they are mixed
  std::vector<std::uint8_t> line_;  // the row of every plane
  std::vector<spool> later_;        // planes behind the first one, which come when that is complete
  std::exception_ptr failure_;
  std::unique_ptr<cups_raster_t, decltype([](cups_raster_t* raster) { cupsRasterClose(raster); })> raster_;
};

unsigned highest_bits(const std::vector<plane_format>& planes) {
  return std::ranges::max_element(planes, {}, &plane_format::bits)->bits;
}

}  // namespace

std::unique_ptr<plane_files> open_cups_planes(plane_order order, output_set& to,
                                              const std::vector<plane_format>& planes, const raster& page,
                                              dot_scale finest, const page_header* from) {
  const unsigned bits = highest_bits(planes);
  const raster size = finer(page, finest);
  cups_page_header2_t header = cups_header(size, from);
  header.cupsBitsPerColor = bits;
  header.cupsNumColors = unsigned(planes.size());
  header.cupsColorSpace = planes.size() == 1   ? CUPS_CSPACE_K
                          : planes.size() == 4 ? CUPS_CSPACE_KCMY
                                               : CUPS_CSPACE_KCMYcm;
  header.cupsColorOrder = order == plane_order::chunky   ? CUPS_ORDER_CHUNKED
                          : order == plane_order::banded ? CUPS_ORDER_BANDED
                                                         : CUPS_ORDER_PLANAR;
  const unsigned used = order == plane_order::chunky ? bits * unsigned(planes.size()) : bits;
  header.cupsBitsPerPixel = used <= 4 ? used : (used + 7) / 8 * 8;  // what libcups reads
  return std::make_unique<cups_planes>(to, cups_planes_name, CUPS_RASTER_WRITE, planes, size, header,
                                       std::vector<unsigned>{0, 1, 2, 3, 4, 5});
}

std::unique_ptr<plane_files> open_pwg_planes(output_set& to, const std::vector<plane_format>& planes,
                                             const raster& page, dot_scale finest, const page_header* from) {
  if (planes.size() == 6) throw usage_error("--format pwg holds K or C, M, Y, K: expected --inks 1 or 4");
  const raster size = finer(page, finest);
  const bool black = planes.size() == 1;
  const char* const type = !black ? "cmyk_8" : highest_bits(planes) == 1 ? "black_1" : "black_8";
  const cups_page_header2_t header = pwg_header(size, type, from);
  const std::vector<unsigned> places = black ? std::vector<unsigned>{0} : std::vector<unsigned>{3, 0, 1, 2};
  return std::make_unique<cups_planes>(to, pwg_planes_name, CUPS_RASTER_WRITE_PWG, planes, size, header, places);
}

}  // namespace vrk::tool
