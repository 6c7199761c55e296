#include "tools/color/link_accuracy.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "tools/pipeline/stage.h"

namespace vrk::tool {
namespace {

using profiles::samples;

constexpr std::size_t color_count = 100000, gray_count = 256;

// The gray axis from black to white, then random colours; 8-bit levels.
std::vector<std::uint8_t> test_colors() {
  std::vector<std::uint8_t> rgb;
  rgb.reserve(3 * color_count);
  for (unsigned level = 0; level < gray_count; ++level) rgb.insert(rgb.end(), 3, std::uint8_t(level));
  std::mt19937 random;  // with its standard seed
  while (rgb.size() < 3 * color_count) rgb.push_back(std::uint8_t(random() >> 24));
  return rgb;
}

samples through_library(const table& image, unsigned precision, unsigned channels,
                        const std::vector<std::uint8_t>& rgb) {
  const line_format input{.samples = 3, .bits = 8};
  const auto stage = channels == 3 ? make_csc1(image, input, precision == 8 ? 8 : 16)
                                   : make_csc2(image, input, precision == 8 ? 8 : 16);
  samples out(color_count * channels);
  if (precision != 8) {
    stage->run(rgb.data(), color_count, out.data());
    return out;
  }
  std::vector<std::uint8_t> narrow(out.size());
  stage->run(rgb.data(), color_count, narrow.data());
  std::transform(narrow.begin(), narrow.end(), out.begin(), [](unsigned v) { return std::uint16_t(v * 257); });
  return out;
}

// Steps of one channel along the grays. least: what the link has to move by to have a direction.
unsigned reversals(const samples& made, const samples& meant, unsigned channels, unsigned channel, int least) {
  unsigned count = 0;
  for (std::size_t at = channel; at + channels < gray_count * channels; at += channels) {
    const int step = made[at + channels] - made[at], meant_step = meant[at + channels] - meant[at];
    count += (step > 0 && meant_step <= -least) || (step < 0 && meant_step >= least);
  }
  return count;
}

}  // namespace

link_accuracy measure_link(const table& image, unsigned precision, const profiles::color_link& link,
                           const profiles::printed_color& shown) {
  const unsigned channels = link.channels();
  const std::vector<std::uint8_t> rgb = test_colors();
  samples wide(rgb.size());
  std::transform(rgb.begin(), rgb.end(), wide.begin(), [](unsigned v) { return std::uint16_t(v * 257); });
  const samples made = through_library(image, precision, channels, rgb), meant = link.convert(wide);

  link_accuracy found{};
  for (auto at = made.begin(); at != made.end(); at += channels) {
    found.largest_total = std::max(found.largest_total, profiles::total_of({at, channels}));
  }
  for (unsigned channel = 0; channel < channels; ++channel) {
    found.gray_reversals += reversals(made, meant, channels, channel, 1 << (15 - precision));
  }
  const std::vector<profiles::lab> seen = shown.of(made), wanted = shown.of(meant);
  std::vector<double> errors(color_count);
  std::transform(seen.begin(), seen.end(), wanted.begin(), errors.begin(), profiles::delta_e2000);
  std::sort(errors.begin(), errors.end());
  found.mean = std::accumulate(errors.begin(), errors.end(), 0.0) / double(color_count);
  found.percentile99 = errors[color_count * 99 / 100];
  found.largest = errors.back();
  return found;
}

}  // namespace vrk::tool
