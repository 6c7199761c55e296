// Pictures of a print: the whole page made small, and a few dots made large.
#pragma once

#include <filesystem>
#include <memory>

#include "tools/dots.h"
#include "tools/image_writer.h"

namespace vrk::tool {

// The page, its longer side at most `longest` pixels: each pixel is the mean light of a square of dots.
class preview {
 public:
  static constexpr unsigned longest = 1600;

  preview(const std::filesystem::path& path, unsigned width, unsigned height);

  void add_line(const std::vector<light>& colors);
  void keep() { file_->keep(); }

 private:
  void write_row();

  unsigned side_;                // dots of the square, across and down
  unsigned width_, lines_left_;  // of the page
  unsigned rows_held_ = 0;
  std::vector<light> sums_;
  std::unique_ptr<image_writer> file_;
};

// A window of the page, every dot drawn as a square.
class detail {
 public:
  static constexpr unsigned width = 160, height = 120, enlargement = 6;

  // The window's centre in pixels of the page; it is moved so as to lie inside.
  struct place {
    unsigned x, y;
  };

  detail(const std::filesystem::path& path, unsigned page_width, unsigned page_height, place centre);

  void add_line(const std::vector<light>& colors);
  void keep() { file_->keep(); }

 private:
  unsigned left_, top_, width_, height_;
  unsigned line_ = 0;
  std::unique_ptr<image_writer> file_;
};

}  // namespace vrk::tool
