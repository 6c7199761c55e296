#include "kit/search/judge.h"

#include <algorithm>
#include <numeric>

#include "kit/presets.h"
#include "tools/image/image_reader.h"
#include "tools/print/dots.h"
#include "tools/print/print_pipeline.h"
#include "tools/review/measure/overlay.h"
#include "tools/review/measure/spectrum.h"
#include "tools/review/measure/visible_noise.h"
#include "tools/review/report_patch.h"

namespace vrk::search {
namespace {

constexpr unsigned inks = 4;
constexpr unsigned tints[] = {5, 14, 28, 40, 52, 64, 76, 84, 96, 112, 126, 150, 170, 190, 214, 236};
constexpr unsigned tint_side = 384, tint_margin = 64;  // lines above the tint that find its tone
constexpr double least_ink = 0.01;                     // mean of a plane that counts

std::unique_ptr<tool::halftone> halftone_of(const tables& of, unsigned planes, unsigned width) {
  return tool::make_error_diffusion({"the filter searched", of.distribution.encode()},
                                    {"its levels", kit::ed_parameters(planes, 2, of.modulation).encode()}, width,
                                    tool::ed_precision::bits10);
}

double mean_ratio(const std::vector<double>& now, const std::vector<double>& before, std::size_t first,
                  std::size_t step) {
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = first; i < now.size(); i += step, ++count) sum += now[i] / before[i];
  return sum / double(count);
}

}  // namespace

judge::judge(const std::vector<std::string>& photographs) {
  for (const std::string& path : photographs) pictures_.push_back(separated(path));
}

judge::picture judge::separated(const std::string& path) {
  const auto source = tool::open_image(path);
  const tool::line_format format{source->channels(), source->bits()};
  tool::print_options options;
  options.inks.count = inks;
  const tool::pipeline stages = tool::make_print_pipeline(tool::choose_tables(options, format), options.layout,
                                                          options.precision(), source->width(), format);
  tool::pipeline::workspace space(stages);
  picture out{source->width(), source->height(), {}, {}};
  out.samples.resize(std::size_t{out.width} * out.height * inks);
  std::vector<std::uint8_t> line(source->line_bytes());
  for (unsigned y = 0; y < out.height; ++y) {
    source->read_line(line.data());
    stages.convert(line.data(), &out.samples[std::size_t{y} * out.width * inks], space);
  }
  for (std::size_t p = 0; p < inks; ++p) {
    tool::ink_plane plane{out.width, out.height, {}};
    for (std::size_t i = p; i < out.samples.size(); i += inks) plane.ink.push_back(float(out.samples[i]) / 255);
    out.inks.push_back(std::move(plane));
  }
  return out;
}

figures judge::measure(const tables& of) const {
  figures found;
  const tool::viewing view;
  for (const picture& photograph : pictures_) {
    const auto by = halftone_of(of, inks, photograph.width);
    tool::dots row(by->planes(), photograph.width);
    std::vector<std::uint8_t> packed(by->output_bytes());
    std::vector<tool::ink_plane> dots(inks, {photograph.width, photograph.height, {}});
    for (unsigned y = 0; y < photograph.height; ++y) {
      by->run(&photograph.samples[std::size_t{y} * photograph.width * inks], packed.data());
      row.read_row(packed.data(), 0);
      for (std::size_t p = 0; p < inks; ++p) {
        for (const std::uint8_t code : row.codes(p)) dots[p].ink.push_back(float(by->planes()[p].ink[code]));
      }
    }
    for (std::size_t p = 0; p < inks; ++p) {
      if (photograph.inks[p].mean() < least_ink) continue;
      const tool::visible_noise noise = tool::measure_noise(dots[p], photograph.inks[p], view);
      found.noise.insert(found.noise.end(), {noise.fine, noise.coarse});
    }
    const tool::overlay_error colors = tool::measure_overlay(dots, photograph.inks, view);
    found.colors.insert(found.colors.end(), {colors.delta_e, colors.lightness, colors.chroma});
  }
  for (const unsigned tint : tints) {
    const auto by = halftone_of(of, 1, tint_side);
    tool::ink_plane dots = tool::flat_patch(*by, tint_side, tint_side + tint_margin, tint, 8);
    dots.ink.erase(dots.ink.begin(), dots.ink.begin() + std::ptrdiff_t{tint_side} * tint_margin);
    dots.height = tint_side;
    found.lines.push_back(tool::strongest_direction(tool::spectrum_of(dots)).ratio);
  }
  return found;
}

judge::score judge::compare(const figures& now, const figures& before) {
  const auto sum = [](const std::vector<double>& of) { return std::accumulate(of.begin(), of.end(), 0.0); };
  const auto largest = [](const std::vector<double>& of) { return *std::max_element(of.begin(), of.end()); };
  return {.fine = mean_ratio(now.noise, before.noise, 0, 2),
          .coarse = mean_ratio(now.noise, before.noise, 1, 2),
          .difference = mean_ratio(now.colors, before.colors, 0, 3),
          .lightness = mean_ratio(now.colors, before.colors, 1, 3),
          .chroma = mean_ratio(now.colors, before.colors, 2, 3),
          .lines = sum(now.lines) / sum(before.lines),
          .worst_lines = largest(now.lines) / largest(before.lines)};
}

double judge::score::cost() const {
  const auto above = [](double value, double bound) { return std::max(0.0, value - bound); };
  return (fine + coarse) / 2 + 2 * above(fine, 0.9) + 1.5 * above(difference, 0.9) + 2 * above(lightness, 0.99) +
         2 * above(chroma, 1.01) + above(lines, 1) + 0.25 * above(worst_lines, 1);
}

}  // namespace vrk::search
