#include "tools/page/page.h"

#include <algorithm>
#include <cstring>

namespace vrk::tool {
namespace {

class margins final : public image_reader {
 public:
  margins(std::unique_ptr<image_reader> picture, const placement& to)
      : image_reader(*picture), picture_(std::move(picture)), to_(to) {
    width_ = to.page_width;
    height_ = to.page_height;
  }

  void read_line(void* line) override {
    std::memset(line, channels_ == 4 ? 0 : 0xFF, line_bytes());  // no ink, or all light
    const unsigned y = next_++;
    if (y < to_.top || y >= to_.top + to_.height) return;
    picture_->read_line(static_cast<std::uint8_t*>(line) + to_.left * (line_bytes() / width_));
  }

 private:
  std::unique_ptr<image_reader> picture_;
  placement to_;
  unsigned next_ = 0;
};

class with_resolution final : public image_reader {
 public:
  with_resolution(std::unique_ptr<image_reader> picture, resolution dpi)
      : image_reader(*picture), picture_(std::move(picture)) {
    dpi_ = dpi;
    seen_ = {};
  }
  void read_line(void* line) override { picture_->read_line(line); }

 private:
  std::unique_ptr<image_reader> picture_;
};

}  // namespace

std::unique_ptr<image_reader> add_margins(std::unique_ptr<image_reader> picture, const placement& to) {
  return std::make_unique<margins>(std::move(picture), to);
}

std::unique_ptr<image_reader> lay_out(std::unique_ptr<image_reader> picture, const page_options& options) {
  const placement to =
      place({picture->width(), picture->height(), picture->dpi(), picture->seen()}, options, picture->name());
  if (to.turn != orientation{}) picture = turn(std::move(picture), to.turn);
  if (to.resampled) picture = resample(std::move(picture), to);
  if (to.width != to.page_width || to.height != to.page_height) picture = add_margins(std::move(picture), to);
  return std::make_unique<with_resolution>(std::move(picture), options.dpi.value_or(usual_dpi));
}

}  // namespace vrk::tool
