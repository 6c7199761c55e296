// Strokes of a round pen on a raster: the share of each pixel that they cover.
#pragma once

#include <algorithm>
#include <cmath>

#include "pictures/stroke_font.h"

namespace vrk::pictures {

// One line of pixels, in the unit of the strokes.
struct raster_line {
  unsigned width;   // pixels
  double pixel;     // side of a pixel
  double left = 0;  // left edge of the first pixel
  double y = 0;     // centre of the line
};

// Calls lay(i, share) for every pixel i of the line that a stroke covers, with the covered share, 0 ... 1. The share
// follows from the distance between pixel and stroke.
template <class Lay>
void draw_stroke(const segment& s, double half_thickness, const raster_line& line, const Lay& lay) {
  const double reach = half_thickness + line.pixel;
  if (line.y < std::min(s.from.y, s.to.y) - reach || line.y > std::max(s.from.y, s.to.y) + reach) return;
  const double dx = s.to.x - s.from.x, dy = s.to.y - s.from.y, length2 = dx * dx + dy * dy;
  const auto column = [&](double x) { return std::clamp((x - line.left) / line.pixel, 0.0, double(line.width)); };
  const auto first = unsigned(column(std::min(s.from.x, s.to.x) - reach));
  const auto last = unsigned(column(std::max(s.from.x, s.to.x) + reach));
  for (unsigned i = first; i < last; ++i) {
    const double px = (i + 0.5) * line.pixel + line.left - s.from.x, py = line.y - s.from.y;
    const double t = length2 > 0 ? std::clamp((px * dx + py * dy) / length2, 0.0, 1.0) : 0;
    const double outside = std::hypot(px - t * dx, py - t * dy) - half_thickness;
    const double share = std::clamp(0.5 - outside / line.pixel, 0.0, std::min(1.0, 2 * half_thickness / line.pixel));
    if (share > 0) lay(i, share);
  }
}

}  // namespace vrk::pictures
