#include "tools/print/preview.h"

#include <algorithm>
#include <cmath>

namespace vrk::tool {
namespace {

unsigned divide_up(unsigned a, unsigned b) { return (a + b - 1) / b; }

// The next whole number, but for what rounding added.
unsigned whole(double number) { return unsigned(std::max(1.0, std::ceil(number - 1e-6))); }

// A dot's side in detail.png, when it is so many times as long as the other.
unsigned drawn(double ratio) { return unsigned(std::max(1.0, ratio) * detail::enlargement + 0.5); }

}  // namespace

// The coarser way the page has whole dots to a square, the finer way as many as make it a square.
preview::preview(output_file& to, const raster& page, unsigned longest, const dot_colors& look)
    : look_(look), width_(page.width), height_(page.height), across_(1), down_(1) {
  const auto [x, y] = page.dpi;
  const double side = std::max(page.width / x, page.height / y) / longest;  // inches
  const bool coarse_down = y < x;
  (coarse_down ? down_ : across_) = whole(side * std::min(x, y));
  (coarse_down ? across_ : down_) = whole(coarse_down ? down_ * x / y : across_ * y / x);
  constexpr unsigned fewest_dots = 8;  // one way
  reach_ = divide_up(fewest_dots, std::min(across_, down_)) / 2;
  current_ = {std::vector<light>(divide_up(width_, across_)), 0};
  file_ = write_png(to, divide_up(width_, across_), divide_up(height_, down_), resolution{x / across_, y / down_},
                    png_content::means_of_dots);
}

void preview::add_row(dots& row) {
  row.add_light(across_, current_.sums);
  ++dot_row_;
  if (++current_.rows == down_ || dot_row_ == height_) end_squares();
}

void preview::end_squares() {
  rows_.push_back(with_neighbours());
  ++end_;
  std::fill(current_.sums.begin(), current_.sums.end(), light{});
  current_.rows = 0;
  while (next_ < end_ && (next_ + reach_ < end_ || dot_row_ == height_)) write_row();
}

preview::square_row preview::with_neighbours() const {
  square_row wide = current_;
  const auto last = unsigned(wide.sums.size()) - 1;
  for (unsigned box = 0; box <= last; ++box) {
    light sum{};
    for (unsigned from = box - std::min(box, reach_); from <= std::min(last, box + reach_); ++from) {
      sum += current_.sums[from];
    }
    wide.sums[box] = sum;
  }
  return wide;
}

void preview::write_row() {
  for (; first_ + reach_ < next_; ++first_) rows_.pop_front();
  const unsigned end = std::min(end_, next_ + reach_ + 1) - first_;
  std::vector<light> row;
  row.reserve(current_.sums.size());
  for (unsigned box = 0; box < current_.sums.size(); ++box) {
    const unsigned left = (box - std::min(box, reach_)) * across_;
    const unsigned right = std::min(width_, (box + reach_ + 1) * across_);
    light sum{};
    unsigned dots = 0;
    for (unsigned y = 0; y < end; ++y) {
      sum += rows_[y].sums[box];
      dots += rows_[y].rows * (right - left);
    }
    row.push_back(sum / float(dots));
  }
  file_->write_line(look_.srgb_of(row).data());
  ++next_;
}

// Dots that lie closer one way than the other are longer the other way; they are drawn so.
detail::detail(output_file& to, const raster& page, pixel_place centre, const dot_colors& look)
    : look_(look),
      dot_width_(drawn(page.dpi.y / page.dpi.x)),
      dot_height_(drawn(page.dpi.x / page.dpi.y)),
      width_(std::clamp(width * enlargement / dot_width_, 1U, page.width)),
      height_(std::clamp(height * enlargement / dot_height_, 1U, page.height)) {
  left_ = window_start(centre.x, width_, page.width);
  top_ = window_start(centre.y, height_, page.height);
  file_ = write_png(to, width_ * dot_width_, height_ * dot_height_,
                    resolution{page.dpi.x * dot_width_, page.dpi.y * dot_height_});
}

void detail::add_row(dots& row) {
  const unsigned at = row_++;
  if (at < top_ || at >= top_ + height_) return;
  const std::vector<std::uint8_t> srgb = look_.srgb_of(std::span(row.colors()).subspan(left_, width_));
  std::vector<std::uint8_t> enlarged;
  for (auto pixel = srgb.begin(); pixel != srgb.end(); pixel += 3) {
    for (unsigned i = 0; i < dot_width_; ++i) enlarged.insert(enlarged.end(), pixel, pixel + 3);
  }
  for (unsigned i = 0; i < dot_height_; ++i) file_->write_line(enlarged.data());
}

}  // namespace vrk::tool
