// A picture as its inks, before halftoning and as dots.
#pragma once

#include <optional>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/image/window.h"
#include "tools/pipeline/halftone.h"
#include "tools/review/measure/ink_plane.h"

namespace vrk::tool {

// A part of a picture, in its pixels.
struct window {
  unsigned left, top, width, height;
};

// The window around a place, moved and cut so that it lies on the page.
window around(pixel_place centre, unsigned width, unsigned height, unsigned page_width, unsigned page_height);

// A byte for every ink of every pixel.
struct ink_picture {
  unsigned width, height, inks;
  std::vector<std::uint8_t> samples;

  std::size_t line_bytes() const { return std::size_t{width} * inks; }
  const std::uint8_t* line(unsigned y) const { return &samples[y * line_bytes()]; }
};

// The inks that `vrk print` would place: 1, 4 (if not said otherwise) or 6.
ink_picture read_inks(image_reader& source, const window& part, std::optional<unsigned> inks);

// One plane for every ink, of a part.
std::vector<ink_plane> ink_planes(const ink_picture& inks, const window& part);
std::vector<ink_plane> dot_planes(const ink_picture& inks, const window& part, halftone& by);

}  // namespace vrk::tool
