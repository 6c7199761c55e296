// Pictures of a print: the whole page made small, and a few dots made large.
#pragma once

#include <memory>

#include "tools/image/image_writer.h"
#include "tools/image/window.h"
#include "tools/print/dots.h"

namespace vrk::tool {

// The whole page, its longer side at most `longest` pixels. Each pixel is the mean light of the dots in one square of
// the page.
class preview {
 public:
  static constexpr unsigned longest = 1600;

  // width, height: of the picture, in its pixels
  preview(output_file& to, unsigned width, unsigned height, dot_scale scale);

  void add_row(const std::vector<light>& colors);
  void finish() { file_->finish(); }

 private:
  preview(output_file& to, unsigned width, unsigned height, dot_scale scale, unsigned side);
  void write_row();

  unsigned across_, down_;      // dots of the square
  unsigned width_, rows_left_;  // of the page, in dots
  unsigned rows_held_ = 0;
  std::vector<light> sums_;
  std::unique_ptr<image_writer> file_;
};

// A window of the page, every dot drawn as a rectangle as wide and as high as it is on the page.
class detail {
 public:
  static constexpr unsigned width = 160, height = 120, enlargement = 6;  // with one dot per pixel

  // page_width, page_height, centre: in pixels of the picture; the window is moved to lie inside
  detail(output_file& to, unsigned page_width, unsigned page_height, dot_scale scale, pixel_place centre);

  void add_row(const std::vector<light>& colors);
  void finish() { file_->finish(); }

 private:
  unsigned dot_width_, dot_height_;       // as drawn
  unsigned left_, top_, width_, height_;  // of the window, in dots
  unsigned row_ = 0;
  std::unique_ptr<image_writer> file_;
};

}  // namespace vrk::tool
