// How the samples of a raster page lie in its stream.
#pragma once

#include <cups/raster.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tools/image/picture_limits.h"

namespace vrk::tool {

struct raster_layout {
  unsigned width, height;
  unsigned channels;  // as an image_reader has them: gray, R G B or C M Y K
  unsigned bits;      // per sample: 1, 2, 4, 8, or 16 in the machine's byte order
  cups_order_t order;
  const std::uint8_t* places;  // of each channel among the stream's colours
  bool inverted;               // inks that are read as gray or R, G, B
  bool adobe_rgb;

  // Bytes of one line of one colour, or of all colours where they are mixed.
  std::size_t row_bytes() const {
    const std::size_t samples = std::size_t{width} * (order == CUPS_ORDER_CHUNKED ? channels : 1);
    return (samples * bits + 7) / 8;
  }
  // What libcups calls a line, and how many of them a page has.
  std::size_t line_bytes() const { return row_bytes() * (order == CUPS_ORDER_BANDED ? channels : 1); }
  std::uint64_t lines() const { return std::uint64_t{height} * (order == CUPS_ORDER_PLANAR ? channels : 1); }
};

// Throws user_error, with `name` in front, when the header's numbers do not go together or are of no page.
raster_layout layout_of(const cups_page_header2_t& header, const std::string& name, const picture_limits& limits = {});

// Whether a line of the stream is what `arrange` would make of it.
bool is_arranged(const raster_layout& layout);

// Fills `to` with one line: width x channels samples of 8 bits, or of 16. rows: of each colour in the stream's order,
// or the one of all colours.
void arrange(const raster_layout& layout, const std::vector<const std::uint8_t*>& rows, void* to);

}  // namespace vrk::tool
