#include "tools/print/preview.h"

#include <algorithm>

#include "kit/srgb.h"

namespace vrk::tool {
namespace {

unsigned divide_up(unsigned a, unsigned b) { return (a + b - 1) / b; }

}  // namespace

preview::preview(output_file& to, unsigned width, unsigned height, dot_scale scale)
    : preview(to, width, height, scale, std::max(1U, divide_up(std::max(width, height), longest))) {}

preview::preview(output_file& to, unsigned width, unsigned height, dot_scale scale, unsigned side)
    : across_(side * scale.x),
      down_(side * scale.y),
      width_(width * scale.x),
      rows_left_(height * scale.y),
      sums_(divide_up(width, side)),
      file_(write_png(to, divide_up(width, side), divide_up(height, side))) {}

void preview::add_row(const std::vector<light>& colors) {
  for (unsigned box = 0, x = 0; x < width_; ++box) {
    light sum = sums_[box];
    for (const unsigned end = std::min(width_, x + across_); x < end; ++x) {
      for (std::size_t c = 0; c < 3; ++c) sum[c] += colors[x][c];
    }
    sums_[box] = sum;
  }
  --rows_left_;
  if (++rows_held_ == down_ || rows_left_ == 0) write_row();
}

void preview::write_row() {
  std::vector<std::uint8_t> row;
  for (unsigned box = 0; box < sums_.size(); ++box) {
    const unsigned across = std::min(across_, width_ - box * across_);  // the last square may be narrower
    for (const float sum : sums_[box]) row.push_back(kit::srgb_byte_of_light(sum / float(across * rows_held_)));
  }
  file_->write_line(row.data());
  std::fill(sums_.begin(), sums_.end(), light{});
  rows_held_ = 0;
}

// A pixel with more dots one way than the other has dots that are longer the other way; they are drawn so.
detail::detail(output_file& to, unsigned page_width, unsigned page_height, dot_scale scale, pixel_place centre)
    : dot_width_(std::max(enlargement, enlargement * scale.y / scale.x)),
      dot_height_(std::max(enlargement, enlargement * scale.x / scale.y)),
      width_(std::min(width * enlargement / dot_width_, page_width * scale.x)),
      height_(std::min(height * enlargement / dot_height_, page_height * scale.y)) {
  left_ = window_start(centre.x * scale.x, width_, page_width * scale.x);
  top_ = window_start(centre.y * scale.y, height_, page_height * scale.y);
  file_ = write_png(to, width_ * dot_width_, height_ * dot_height_);
}

void detail::add_row(const std::vector<light>& colors) {
  const unsigned at = row_++;
  if (at < top_ || at >= top_ + height_) return;
  std::vector<std::uint8_t> row;
  for (unsigned x = left_; x < left_ + width_; ++x) {
    for (unsigned i = 0; i < dot_width_; ++i) {
      for (const float sample : colors[x]) row.push_back(kit::srgb_byte_of_light(sample));
    }
  }
  for (unsigned i = 0; i < dot_height_; ++i) file_->write_line(row.data());
}

}  // namespace vrk::tool
