// Pictures of a print: the whole page made small, and a few dots made large.
#pragma once

#include <deque>
#include <memory>

#include "tools/image/image_writer.h"
#include "tools/image/window.h"
#include "tools/print/dots.h"

namespace vrk::tool {

// A grid of pixels or dots on paper.
struct raster {
  unsigned width, height;
  resolution dpi;
};
constexpr raster finer(const raster& grid, dot_scale by) {
  return {grid.width * by.x, grid.height * by.y, {grid.dpi.x * by.x, grid.dpi.y * by.y}};
}

// The whole page as the mean light of its dots, so that every viewer shows its tone at any magnification. Each pixel
// stands for a square of the page; where that holds few dots, the mean is over its neighbours as well.
class preview {
 public:
  // page: in dots; its longer side has at most `longest` pixels here
  preview(output_file& to, const raster& page, unsigned longest, const dot_colors& look);

  void add_row(dots& row);
  void finish() { file_->finish(); }

 private:
  // Sums of light over squares, or over a square and its neighbours in the row.
  struct square_row {
    std::vector<light> sums;
    unsigned rows;  // of dots
  };
  square_row with_neighbours() const;
  void end_squares();
  void write_row();

  dot_colors look_;
  unsigned width_, height_;  // of the page, in dots
  unsigned across_, down_;   // dots of a square
  unsigned reach_;           // neighbours that count, each way
  unsigned dot_row_ = 0, next_ = 0;
  square_row current_;
  std::deque<square_row> rows_;   // the last of them, up to the one that was completed last
  unsigned first_ = 0, end_ = 0;  // which these are
  std::unique_ptr<image_writer> file_;
};

// A window of the page, every dot drawn as a rectangle as wide and as high as it is on the page.
class detail {
 public:
  static constexpr unsigned width = 160, height = 120, enlargement = 6;  // of dots that are square

  // page, centre: in dots; the window is moved to lie inside
  detail(output_file& to, const raster& page, pixel_place centre, const dot_colors& look);

  void add_row(dots& row);
  void finish() { file_->finish(); }

 private:
  dot_colors look_;
  unsigned dot_width_, dot_height_;       // as drawn
  unsigned left_, top_, width_, height_;  // of the window, in dots
  unsigned row_ = 0;
  std::unique_ptr<image_writer> file_;
};

}  // namespace vrk::tool
