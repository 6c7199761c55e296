#include "tools/print/raster_header.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

constexpr double points_per_inch = 72, hundredths_of_mm_per_inch = 2540;

struct points {
  double across, down;
};

points points_of(const raster& size) {
  return {size.width / size.dpi.x * points_per_inch, size.height / size.dpi.y * points_per_inch};
}

pwg_media_t* paper_of(const raster& size) {
  const points page = points_of(size);
  const auto hundredths_of_mm = [](double length) {
    return int(std::lround(length / points_per_inch * hundredths_of_mm_per_inch));
  };
  return pwgMediaForSize(hundredths_of_mm(page.across), hundredths_of_mm(page.down));
}

bool is_same_size(const cups_page_header2_t& header, const raster& size) {
  constexpr double tolerance = 0.5;  // points; less than what a dot of 150 dpi is
  if (header.HWResolution[0] == 0 || header.HWResolution[1] == 0) return false;
  const points was = points_of(
      {header.cupsWidth, header.cupsHeight, {double(header.HWResolution[0]), double(header.HWResolution[1])}});
  const points is = points_of(size);
  return std::abs(was.across - is.across) < tolerance && std::abs(was.down - is.down) < tolerance;
}

void set_dots(cups_page_header2_t& header, const raster& size) {
  header.HWResolution[0] = unsigned(std::lround(size.dpi.x));
  header.HWResolution[1] = unsigned(std::lround(size.dpi.y));
  header.cupsWidth = size.width;
  header.cupsHeight = size.height;
}

// A page without margins.
void set_paper(cups_page_header2_t& header, const raster& size) {
  const points page = points_of(size);
  const double sides[2] = {page.across, page.down};
  for (unsigned i = 0; i < 2; ++i) {
    header.Margins[i] = header.ImagingBoundingBox[i] = 0;
    header.cupsImagingBBox[i] = 0;
    header.cupsPageSize[i] = header.cupsImagingBBox[2 + i] = float(sides[i]);
    header.PageSize[i] = header.ImagingBoundingBox[2 + i] = unsigned(std::lround(sides[i]));
  }
}

template <std::size_t size>
void set_text(char (&to)[size], std::string_view text) {
  std::ranges::fill(to, '\0');
  text.copy(to, size - 1);
}

}  // namespace

cups_page_header2_t cups_header(const raster& size, const page_header* from) {
  cups_page_header2_t header{};
  if (from != nullptr) header = from->cups;
  const bool was_cups = from != nullptr && !from->is_pwg();
  if (!was_cups) {  // these mean other things in PWG raster
    set_text(header.MediaClass, "");
    std::ranges::fill(header.cupsInteger, 0U);
  }
  header.NumCopies = std::max(header.NumCopies, 1U);
  if (header.cupsBorderlessScalingFactor == 0) header.cupsBorderlessScalingFactor = 1;
  if (!was_cups || header.PageSize[0] == 0 || !is_same_size(header, size)) {
    set_paper(header, size);
    const pwg_media_t* const paper = paper_of(size);
    set_text(header.cupsPageSizeName, paper != nullptr && paper->ppd != nullptr ? paper->ppd : "");
  }
  set_dots(header, size);
  return header;
}

cups_page_header2_t pwg_header(const raster& size, const char* type, const page_header* from) {
  cups_page_header2_t header{};
  if (cupsRasterInitPWGHeader(&header, paper_of(size), type, int(std::lround(size.dpi.x)), int(std::lround(size.dpi.y)),
                              "one-sided", nullptr) == 0) {
    throw user_error(std::string("--format pwg: ") + cupsRasterErrorString());
  }
  if (from != nullptr) {
    const cups_page_header2_t& was = from->cups;
    set_text(header.MediaType, was.MediaType);
    header.MediaPosition = was.MediaPosition;
    header.MediaWeight = was.MediaWeight;
    std::memcpy(&header.Duplex, &was.Duplex, sizeof header.Duplex);  // whatever a file had there
    std::memcpy(&header.Tumble, &was.Tumble, sizeof header.Tumble);
    header.NumCopies = std::max(was.NumCopies, 1U);
    if (from->is_pwg()) std::copy_n(was.cupsInteger, std::size(was.cupsInteger), header.cupsInteger);
    header.cupsInteger[CUPS_RASTER_PWG_TotalPageCount] = 0;  // not known: this stream may hold some of the pages
    header.cupsInteger[CUPS_RASTER_PWG_ImageBoxLeft] = header.cupsInteger[CUPS_RASTER_PWG_ImageBoxTop] = 0;
  }
  header.cupsInteger[CUPS_RASTER_PWG_ImageBoxRight] = size.width;
  header.cupsInteger[CUPS_RASTER_PWG_ImageBoxBottom] = size.height;
  set_paper(header, size);
  set_dots(header, size);
  return header;
}

}  // namespace vrk::tool
