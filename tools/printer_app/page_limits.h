// Pages and pictures that a network may send.
#pragma once

#include <cups/raster.h>

#include <string>

#include "tools/image/picture_limits.h"

namespace vrk::tool {

// The largest paper, and the most memory for a picture that cannot be read line by line.
inline constexpr unsigned widest_paper_mm = 432, longest_paper_mm = 1200;
// 65500 pixels: the longest side of a JPEG.
inline constexpr picture_limits job_limits(std::uint64_t{256} << 20, 65500, 65500);

// Both throw user_error, with `name` in front.

// Where the header of a page is not like one that PAPPL takes, PAPPL shows the driver one of its own making.
void refuse_replaced_header(const cups_page_header2_t& header, const std::string& name);

void refuse_huge_page(const cups_page_header2_t& header, const std::string& name);

}  // namespace vrk::tool
