#include "tools/printer_app/page_limits.h"

#include <algorithm>

#include "tools/image/resolution.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

std::string by(unsigned width, unsigned height) { return std::to_string(width) + " x " + std::to_string(height); }

}  // namespace

// The box of the page in PAPPL's own header stands on its head: no other program writes such a one.
void refuse_replaced_header(const cups_page_header2_t& header, const std::string& name) {
  const auto top = header.cupsInteger[CUPS_RASTER_PWG_ImageBoxTop];
  if (top == 0 || top <= header.cupsInteger[CUPS_RASTER_PWG_ImageBoxBottom]) return;
  throw user_error(name + ": has pixels of 1 bit, expected sgray_8, srgb_8 or adobe-rgb_8");
}

void refuse_huge_page(const cups_page_header2_t& header, const std::string& name) {
  const auto millimetres = [&](unsigned pixels, unsigned dpi) { return pixels * mm_per_inch / std::max(dpi, 1U); };
  const double width = millimetres(header.cupsWidth, header.HWResolution[0]);
  const double height = millimetres(header.cupsHeight, header.HWResolution[1]);
  constexpr double rounding = 1;
  if (width <= widest_paper_mm + rounding && height <= longest_paper_mm + rounding) return;
  throw user_error(name + ": has " + by(header.cupsWidth, header.cupsHeight) + " pixels at " +
                   by(header.HWResolution[0], header.HWResolution[1]) + " dpi, expected a page of at most " +
                   by(widest_paper_mm, longest_paper_mm) + " mm");
}

}  // namespace vrk::tool
