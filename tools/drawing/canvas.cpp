#include "tools/drawing/canvas.h"

#include <algorithm>

#include "pictures/pen.h"
#include "tools/image/image_writer.h"

namespace vrk::tool {

canvas::canvas(unsigned width, unsigned height)
    : width_(width), height_(height), pixels_(std::size_t{width} * height, pixel{255, 255, 255}) {}

void canvas::fill(unsigned left, unsigned top, unsigned width, unsigned height, pixel color) {
  const unsigned right = std::min(width_, left + width), bottom = std::min(height_, top + height);
  for (unsigned y = top; y < bottom; ++y) {
    for (unsigned x = left; x < right; ++x) pixels_[std::size_t{y} * width_ + x] = color;
  }
}

void canvas::draw(const std::vector<pictures::segment>& strokes, double thickness, pixel color) {
  for (const pictures::segment& s : strokes) {
    const auto row = [&](double y) { return unsigned(std::clamp(y, 0.0, double(height_))); };
    const unsigned last = row(std::max(s.from.y, s.to.y) + thickness + 2);
    for (unsigned y = row(std::min(s.from.y, s.to.y) - thickness - 1); y < last; ++y) {
      pictures::draw_stroke(s, thickness / 2, {width_, 1, 0, y + 0.5}, [&](unsigned x, double share) {
        pixel& under = pixels_[std::size_t{y} * width_ + x];
        for (std::size_t c = 0; c < 3; ++c) under[c] = std::uint8_t(under[c] + share * (color[c] - under[c]) + 0.5);
      });
    }
  }
}

void canvas::write(std::string_view text, double x, double base, double cap, pixel color, align where) {
  const double width = pictures::stroke_text_width(text) * cap;
  const double left = where == align::left ? x : where == align::centre ? x - width / 2 : x - width;
  std::vector<pictures::segment> strokes = pictures::stroke_text(text);
  for (pictures::segment& s : strokes) {
    for (pictures::point* const p : {&s.from, &s.to}) *p = {left + p->x * cap, base + (p->y - 1) * cap};
  }
  draw(strokes, std::max(1.2, 0.12 * cap), color);
}

void canvas::save(output_file& to) const {
  const auto picture = write_png(to, width_, height_);
  for (unsigned y = 0; y < height_; ++y) picture->write_line(&pixels_[std::size_t{y} * width_]);
  picture->finish();
}

}  // namespace vrk::tool
