#include "tools/review/photographs.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <filesystem>
#include <mutex>

#include "pictures/photograph.h"
#include "tools/color/open_picture.h"
#include "tools/command_line/progress.h"
#include "tools/page/page.h"
#include "tools/pipeline/user_error.h"
#include "tools/review/against.h"

namespace vrk::tool {
namespace {

constexpr unsigned largest_side = 1024;  // pixels that are measured

// The built-in scene as a picture that was read.
class scene_reader final : public image_reader {
 public:
  scene_reader() : image_reader("sample") {
    width_ = height_ = 512;
    channels_ = 3;
    pixels_ = pictures::photograph(width_, height_);
  }
  void read_line(void* line) override {
    std::copy_n(pixels_.begin() + std::ptrdiff_t(line_bytes() * next_++), line_bytes(),
                static_cast<std::uint8_t*>(line));
  }

 private:
  kit::bytes pixels_;
  std::size_t next_ = 0;
};

photograph read_photograph(image_reader& source, unsigned inks) {
  const unsigned width = source.width(), height = source.height();
  const window middle = around({width / 2, height / 2}, largest_side, largest_side, width, height);
  if (std::min(middle.width, middle.height) < spectrum_window) {
    throw user_error(source.name() + ": " + std::to_string(width) + " x " + std::to_string(height) +
                     " pixels, expected at least " + std::to_string(spectrum_window) + " each way");
  }
  photograph p{
      std::filesystem::path(source.name()).stem().string(), read_inks(source, {0, 0, width, height}, inks), middle, {}};
  p.asked = ink_planes(p.inks, middle);
  return p;
}

}  // namespace

std::vector<photograph> read_photographs(const report_options& options) {
  std::vector<photograph> photographs;
  for (const image_argument& argument : options.images) {
    auto source = open_picture(argument);
    if (source->seen() != orientation{}) {
      const orientation seen = source->seen();
      source = turn(std::move(source), seen);
    }
    photographs.push_back(read_photograph(*source, options.inks));
    const std::string& name = photographs.back().name;
    if (std::any_of(photographs.begin(), photographs.end() - 1, [&](const photograph& p) { return p.name == name; })) {
      throw user_error(argument.path + ": a second photograph with the name " + name);
    }
  }
  if (photographs.empty()) {
    scene_reader scene;
    photographs.push_back(read_photograph(scene, options.inks));
  }
  return photographs;
}

visible_noise photograph_figures::mean_noise() const {
  visible_noise sum;
  unsigned planes = 0;
  for (const auto& plane : noise) {
    if (!plane) continue;
    sum = {sum.fine + plane->fine, sum.coarse + plane->coarse, sum.eye + plane->eye};
    ++planes;
  }
  return planes == 0 ? sum : visible_noise{sum.fine / planes, sum.coarse / planes, sum.eye / planes};
}

photograph_figures measure_photograph(const photograph& of, const std::vector<ink_plane>& dots, const viewing& view) {
  photograph_figures figures;
  bool complete = true;
  for (std::size_t p = 0; p < dots.size(); ++p) {
    complete = complete && !dots[p].ink.empty();
    if (dots[p].ink.empty() || of.asked[p].mean() < 0.002) continue;
    figures.noise[p] = measure_noise(dots[p], of.asked[p], view);
    const direction lines = strongest_direction(spectrum_of(difference_without_tone_curve(dots[p], of.asked[p])));
    if (lines.ratio > figures.lines.ratio) figures.lines = lines;
  }
  if (complete) figures.overlay = measure_overlay(dots, of.asked, view);
  return figures;
}

photograph_figures photograph_row::mean() const {
  photograph_figures out;
  double colored = 0;
  overlay_error colors;
  std::array<double, 6> count{};
  for (const auto& of : figures) {
    if (!of) continue;
    for (std::size_t p = 0; p < count.size(); ++p) {
      if (!of->noise[p]) continue;
      if (!out.noise[p]) out.noise[p] = visible_noise{};
      const double k = 1 / ++count[p];  // a mean that goes on
      visible_noise& mean = *out.noise[p];
      mean.fine += k * (of->noise[p]->fine - mean.fine);
      mean.coarse += k * (of->noise[p]->coarse - mean.coarse);
      mean.eye += k * (of->noise[p]->eye - mean.eye);
    }
    if (of->lines.ratio > out.lines.ratio) out.lines = of->lines;
    if (!of->overlay) continue;
    const double k = 1 / ++colored;
    colors.delta_e += k * (of->overlay->delta_e - colors.delta_e);
    colors.lightness += k * (of->overlay->lightness - colors.lightness);
    colors.chroma += k * (of->overlay->chroma - colors.chroma);
    colors.mean_a += k * (of->overlay->mean_a - colors.mean_a);
    colors.mean_b += k * (of->overlay->mean_b - colors.mean_b);
  }
  if (colored > 0) out.overlay = colors;
  return out;
}

std::vector<photograph_row> measure_photographs(const std::vector<photograph>& photographs,
                                                const std::vector<halftone_choice>& choices,
                                                const report_options& options) {
  std::vector<photograph_row> rows = measure_others(photographs, options);
  const std::size_t others = rows.size();
  for (const halftone_choice& choice : choices) {
    rows.push_back({choice.name, choice.dither ? "threshold matrix" : "error filter",
                    std::vector<std::optional<photograph_figures>>(photographs.size())});
  }
  progress bar(unsigned(choices.size() * photographs.size()));
  std::mutex one;
  tbb::parallel_for(std::size_t{0}, choices.size() * photographs.size(), [&](std::size_t i) {
    const std::size_t c = i / photographs.size(), p = i % photographs.size();
    const photograph& of = photographs[p];
    const auto by = make_halftone(choices[c], of.inks.inks, options.levels, options.noise, of.inks.width);
    rows[others + c].figures[p] = measure_photograph(of, dot_planes(of.inks, of.part, *by), options.view);
    const std::lock_guard guard(one);
    bar.step();
  });
  return rows;
}

}  // namespace vrk::tool
