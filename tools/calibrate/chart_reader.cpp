#include "tools/calibrate/chart_reader.h"

#include <algorithm>

#include "pictures/pen.h"

namespace vrk::tool {
namespace {

constexpr double stroke = 0.16;  // mm, of marks and text

class chart_reader final : public image_reader {
 public:
  chart_reader(const step_chart& chart, paper_size paper, resolution dpi, unsigned bits)
      : image_reader("step chart"),
        chart_(chart),
        pixel_width_(mm_per_inch / dpi.x),
        pixel_height_(mm_per_inch / dpi.y) {
    width_ = pixels(paper.width, pixel_width_);
    height_ = pixels(paper.height, pixel_height_);
    channels_ = chart.inks;
    bits_ = bits;
    dpi_ = dpi;
    line_.resize(std::size_t{width_} * channels_);
  }

  void read_line(void* line) override {
    std::fill(line_.begin(), line_.end(), std::uint8_t{0});
    const double y = (next_++ + 0.5) * pixel_height_;
    for (const chart_patch& patch : chart_.patches) {
      if (y >= patch.top && y < patch.top + chart_.side) fill(patch);
    }
    draw(chart_.text, y, 1);
    draw(chart_.marks, y, channels_);
    if (bits_ == 8) {
      std::copy(line_.begin(), line_.end(), static_cast<std::uint8_t*>(line));
    } else {
      std::transform(line_.begin(), line_.end(), static_cast<std::uint16_t*>(line),
                     [](unsigned sample) { return std::uint16_t(sample * 257); });
    }
  }

 private:
  static unsigned pixels(double length, double pixel) { return unsigned(std::max(1.0, length / pixel + 0.5)); }

  void fill(const chart_patch& patch) {
    const unsigned left = pixels(patch.left, pixel_width_), right = pixels(patch.left + chart_.side, pixel_width_);
    for (unsigned x = left; x < right; ++x) std::copy_n(patch.tones.begin(), channels_, &line_[x * channels_]);
  }

  // inks: the first so many.
  void draw(const std::vector<pictures::segment>& strokes, double y, unsigned inks) {
    for (const pictures::segment& s : strokes) {
      pictures::draw_stroke(s, stroke / 2, {width_, pixel_width_, 0, y}, [&](unsigned x, double share) {
        for (unsigned ink = 0; ink < inks; ++ink) {
          std::uint8_t& sample = line_[std::size_t{x} * channels_ + ink];
          sample = std::max(sample, std::uint8_t(share * 255 + 0.5));
        }
      });
    }
  }

  const step_chart& chart_;
  double pixel_width_, pixel_height_;  // mm
  std::vector<std::uint8_t> line_;
  unsigned next_ = 0;
};

}  // namespace

std::unique_ptr<image_reader> read_chart(const step_chart& chart, paper_size paper, resolution dpi, unsigned bits) {
  return std::make_unique<chart_reader>(chart, paper, dpi, bits);
}

}  // namespace vrk::tool
