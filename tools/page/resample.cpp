#include <algorithm>
#include <vector>

#include "tools/page/axis.h"
#include "tools/page/lanczos.h"
#include "tools/page/light_levels.h"
#include "tools/page/page.h"

namespace vrk::tool {
namespace {

// Every line is resampled across as it is read; a strip of lines of the result is then made from those held.
class resampled_picture final : public image_reader {
 public:
  resampled_picture(std::unique_ptr<image_reader> picture, const placement& to)
      : image_reader(*picture),
        picture_(std::move(picture)),
        levels_(*picture_),
        across_{width_, to.part_left, to.part_width, to.width},
        down_{height_, to.part_top, to.part_height, to.height},
        filter_(lanczos::across(across_, 1)),
        bytes_(line_bytes()),
        line_(width_, 1),
        across_line_(to.width, 1),
        low_(to.width),
        high_(to.width) {
    width_ = to.width;
    height_ = to.height;
    constexpr std::size_t strip_bytes = 1 << 20;
    strip_lines_ = unsigned(std::clamp<std::size_t>(strip_bytes / (width_ * channels_ * sizeof(float)), 1, 16));
    for (unsigned c = 0; c < channels_; ++c) {
      held_.emplace_back(width_, down_.longest_reach(strip_lines_));
      strip_.emplace_back(width_, strip_lines_);
    }
    for (unsigned x = 0; x < width_; ++x) middles_.push_back(across_.under_middle(x));
  }

  void read_line(void* line) override {
    const unsigned in_strip = next_ % strip_lines_;
    if (in_strip == 0) make_strip();
    for (unsigned c = 0; c < channels_; ++c) levels_.write(strip_[c].row(in_strip), c, width_, line);
    ++next_;
  }

 private:
  void make_strip() {
    const unsigned lines = std::min(strip_lines_, height_ - next_);
    const pixel_range wanted{down_.under_filter(next_).first, down_.under_filter(next_ + lines - 1).end};
    hold(wanted);
    const double start = down_.start + next_ * down_.step() - wanted.first;
    lanczos filter = lanczos::down({wanted.end - wanted.first, start, lines * down_.step(), lines}, width_);
    for (unsigned c = 0; c < channels_; ++c) {
      filter.run(held_[c], strip_[c]);
      for (unsigned y = 0; y < lines; ++y) limit_down(held_[c], down_.under_middle(next_ + y), strip_[c].row(y));
    }
    if (next_ + lines < height_) return;
    while (lines_read_ < down_.pixels) read_next();  // to the end, so that a broken picture is always found out
  }

  // Has these lines of the picture, resampled across, as the first rows of the planes. Both ends only move on.
  void hold(const pixel_range& wanted) {
    while (lines_read_ < wanted.first) {  // a part that is not shown
      read_next();
      held_from_ = lines_read_;
    }
    for (float_plane& plane : held_) {
      std::copy(plane.row(wanted.first - held_from_), plane.row(lines_read_ - held_from_), plane.row(0));
    }
    held_from_ = wanted.first;
    while (lines_read_ < wanted.end) {
      read_next();
      for (unsigned c = 0; c < channels_; ++c) resample_across(c, held_[c].row(lines_read_ - 1 - held_from_));
    }
  }

  void read_next() {
    picture_->read_line(bytes_.data());
    ++lines_read_;
  }

  void resample_across(unsigned channel, float* to) {
    levels_.read(bytes_.data(), channel, across_.pixels, line_.row(0));
    filter_.run(line_, across_line_);
    const float* const from = line_.row(0);
    const float* const sharp = across_line_.row(0);
    for (unsigned x = 0; x < width_; ++x) {
      const auto [low, high] = std::minmax_element(from + middles_[x].first, from + middles_[x].end);
      to[x] = std::clamp(sharp[x], *low, *high);
    }
  }

  void limit_down(const float_plane& held, const pixel_range& middle, float* line) {
    const float* const first = held.row(middle.first - held_from_);
    std::copy_n(first, width_, low_.begin());
    std::copy_n(first, width_, high_.begin());
    for (unsigned y = middle.first + 1; y < middle.end; ++y) {
      const float* const row = held.row(y - held_from_);
      for (unsigned x = 0; x < width_; ++x) {
        low_[x] = std::min(low_[x], row[x]);
        high_[x] = std::max(high_[x], row[x]);
      }
    }
    for (unsigned x = 0; x < width_; ++x) line[x] = std::min(std::max(line[x], low_[x]), high_[x]);
  }

  std::unique_ptr<image_reader> picture_;
  light_levels levels_;
  axis across_, down_;
  lanczos filter_;                    // across
  std::vector<pixel_range> middles_;  // under the filter's middle lobe, for every column
  std::vector<std::uint8_t> bytes_;   // the line of the picture that was read last
  float_plane line_, across_line_;    // one channel of it, and resampled
  std::vector<float_plane> held_;     // for each channel: lines resampled across, the first is line held_from_
  std::vector<float_plane> strip_;    // for each channel: lines of the result
  std::vector<float> low_, high_;     // limits of a line
  unsigned strip_lines_ = 0;
  unsigned lines_read_ = 0, held_from_ = 0, next_ = 0;
};

}  // namespace

std::unique_ptr<image_reader> resample(std::unique_ptr<image_reader> picture, const placement& to) {
  return std::make_unique<resampled_picture>(std::move(picture), to);
}

}  // namespace vrk::tool
