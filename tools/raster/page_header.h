// What a page of a raster stream says beside its samples: its paper, its job, and what filters and drivers tell each
// other.
#pragma once

#include <cups/raster.h>

#include <string_view>

namespace vrk::tool {

struct page_header {
  cups_page_header2_t cups;

  bool is_pwg() const { return std::string_view(cups.MediaClass) == "PwgRaster"; }
};

}  // namespace vrk::tool
