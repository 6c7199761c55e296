// Headers of pages that are written as raster streams.
#pragma once

#include "tools/print/preview.h"
#include "tools/raster/page_header.h"

namespace vrk::tool {

// All but what the samples are. from: the page that it was, null where that had no header. Keeps what `from` says;
// about the page's size only as long as that is the same on paper.
cups_page_header2_t cups_header(const raster& size, const page_header* from);

// The same for PWG raster. type: of the samples, as libcups calls it. Throws user_error when libcups knows no such
// page.
cups_page_header2_t pwg_header(const raster& size, const char* type, const page_header* from);

}  // namespace vrk::tool
