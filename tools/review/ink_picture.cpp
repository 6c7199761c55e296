#include "tools/review/ink_picture.h"

#include <algorithm>

#include "tools/print/dots.h"
#include "tools/print/print_pipeline.h"

namespace vrk::tool {
namespace {

std::vector<ink_plane> blank_planes(std::size_t count, const window& part) {
  std::vector<ink_plane> planes(count);
  for (ink_plane& plane : planes) {
    plane.width = part.width;
    plane.height = part.height;
    plane.ink.reserve(std::size_t{part.width} * part.height);
  }
  return planes;
}

}  // namespace

window around(pixel_place centre, unsigned width, unsigned height, unsigned page_width, unsigned page_height) {
  width = std::min(width, page_width);
  height = std::min(height, page_height);
  return {window_start(centre.x, width, page_width), window_start(centre.y, height, page_height), width, height};
}

ink_picture read_inks(image_reader& source, const window& part, std::optional<unsigned> inks) {
  print_options options;
  options.inks.count = inks;
  const line_format format{source.channels(), source.bits()};
  const pipeline stages =
      make_print_pipeline(choose_tables(options, format), options.layout, options.precision(), part.width, format);

  pipeline::workspace space(stages);
  ink_picture picture{part.width, part.height, stages.output().samples, {}};
  picture.samples.resize(part.height * picture.line_bytes());
  std::vector<std::uint8_t> line(source.line_bytes());
  for (unsigned y = 0; y < source.height(); ++y) {  // all lines, so that a broken picture is always refused
    source.read_line(line.data());
    if (y < part.top || y >= part.top + part.height) continue;
    const std::size_t pixel_bytes = source.line_bytes() / source.width();
    stages.convert(&line[part.left * pixel_bytes], &picture.samples[(y - part.top) * picture.line_bytes()], space);
  }
  return picture;
}

std::vector<ink_plane> ink_planes(const ink_picture& inks, const window& part) {
  std::vector<ink_plane> planes = blank_planes(inks.inks, part);
  for (unsigned y = part.top; y < part.top + part.height; ++y) {
    const std::uint8_t* sample = inks.line(y) + std::size_t{part.left} * inks.inks;
    for (unsigned x = 0; x < part.width; ++x) {
      for (ink_plane& plane : planes) plane.ink.push_back(float(*sample++) / 255);
    }
  }
  return planes;
}

std::vector<ink_plane> dot_planes(const ink_picture& inks, const window& part, halftone& by) {
  std::vector<ink_plane> planes = blank_planes(inks.inks, part);
  dots row(by.planes(), inks.width);
  std::vector<std::uint8_t> packed(by.output_bytes());
  for (unsigned y = 0; y < part.top + part.height; ++y) {
    by.run(inks.line(y), packed.data());
    if (y < part.top) continue;
    row.read_row(packed.data(), 0);
    for (std::size_t p = 0; p < planes.size(); ++p) {
      const auto codes = row.codes(p).begin() + std::ptrdiff_t{part.left};
      for (unsigned x = 0; x < part.width; ++x) {
        planes[p].ink.push_back(float(by.planes()[p].ink[codes[std::ptrdiff_t(x)]]));
      }
    }
  }
  return planes;
}

}  // namespace vrk::tool
