#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "tools/files/spool.h"
#include "tools/page/page.h"

namespace vrk::tool {
namespace {

class turned_picture final : public image_reader {
 public:
  turned_picture(std::unique_ptr<image_reader> picture, orientation by)
      : image_reader(*picture), picture_(std::move(picture)), by_(by), pixel_(line_bytes() / width_) {
    if (by_.exchanged) {
      std::swap(width_, height_);
      if (dpi_) std::swap(dpi_->x, dpi_->y);
    }
    seen_ = {};
  }

  void read_line(void* line) override {
    auto* const to = static_cast<std::uint8_t*>(line);
    if (!by_.exchanged && !by_.from_bottom) {
      picture_->read_line(to);
    } else {
      if (!lines_) keep_lines();
      by_.exchanged ? read_column(to) : read_back(to);
    }
    // Seen lines run along stored ones, or along stored columns.
    if (by_.exchanged ? by_.from_bottom : by_.from_right) mirror(to);
    ++next_;
  }

 private:
  void keep_lines() {
    lines_.emplace();
    std::vector<std::uint8_t> line(picture_->line_bytes());
    for (unsigned y = 0; y < picture_->height(); ++y) {
      picture_->read_line(line.data());
      lines_->append(line.data(), line.size());
    }
  }

  void read_back(std::uint8_t* to) {
    lines_->read(std::uint64_t{height_ - 1 - next_} * line_bytes(), to, line_bytes());
  }

  // Strips of so many columns that they are a few MB.
  void read_column(std::uint8_t* to) {
    const unsigned column = by_.from_right ? height_ - 1 - next_ : next_;
    constexpr std::size_t strip_bytes = 4 << 20;
    const auto columns = unsigned(std::clamp<std::size_t>(strip_bytes / line_bytes(), 1, height_));
    const unsigned first = column / columns * columns, here = std::min(columns, height_ - first);
    if (next_ == 0 || first != first_) read_strip(first, here);
    first_ = first;
    const std::uint8_t* from = &strip_[(column - first) * pixel_];
    for (unsigned x = 0; x < width_; ++x, from += here * pixel_, to += pixel_) std::memcpy(to, from, pixel_);
  }
  void read_strip(unsigned first, unsigned columns) {
    const std::size_t bytes = columns * pixel_;
    strip_.resize(width_ * bytes);
    for (unsigned y = 0; y < width_; ++y) {
      lines_->read(std::uint64_t{y} * picture_->line_bytes() + first * pixel_, &strip_[y * bytes], bytes);
    }
  }

  void mirror(std::uint8_t* line) const {
    for (unsigned left = 0, right = width_ - 1; left < right; ++left, --right) {
      std::swap_ranges(line + left * pixel_, line + (left + 1) * pixel_, line + right * pixel_);
    }
  }

  std::unique_ptr<image_reader> picture_;
  orientation by_;
  std::size_t pixel_;  // bytes
  std::optional<spool> lines_;
  std::vector<std::uint8_t> strip_;  // some columns of all stored lines
  unsigned first_ = 0;               // column of the strip
  unsigned next_ = 0;                // line
};

}  // namespace

std::unique_ptr<image_reader> turn(std::unique_ptr<image_reader> picture, orientation by) {
  return std::make_unique<turned_picture>(std::move(picture), by);
}

}  // namespace vrk::tool
