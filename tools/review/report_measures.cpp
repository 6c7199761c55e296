#include "tools/review/report_measures.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <set>

#include "kit/threshold_matrices.h"
#include "tools/command_line/progress.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

constexpr unsigned tone_side = 256, noise_side = 256, spectrum_side = 1024;  // pixels of the patches, at least

constexpr unsigned settling = 64;  // pixels that error diffusion takes to reach its tone

// A side that holds whole tiles of the matrix, whose sides the kit may double for 8-bit samples.
unsigned whole_tiles(const halftone_choice& choice, unsigned at_least) {
  const unsigned tile = choice.dither ? 2 * kit::plane_matrices(choice.name)[0].width : 1;
  return (at_least + tile - 1) / tile * tile;
}

tone_errors measure_tones(const halftone_choice& choice, const report_options& options, ed_precision precision) {
  const unsigned side = whole_tiles(choice, tone_side), bits = precision == ed_precision::samples16 ? 16 : 8;
  tone_errors errors;
  for (unsigned tone = 1; tone <= 254; ++tone) {
    const auto by = make_halftone(choice, 1, options.levels, options.noise, side, precision);
    errors.push_back(flat_patch(*by, side, side, tone, bits).mean() - tone / 255.0);
  }
  return errors;
}

// Without the pixels in which error diffusion settles.
ink_plane inner(const ink_plane& patch, unsigned margin) {
  ink_plane part{patch.width - 2 * margin, patch.height - margin, {}};
  for (unsigned y = margin; y < patch.height; ++y) {
    const auto row = patch.ink.begin() + std::ptrdiff_t{y} * patch.width;
    part.ink.insert(part.ink.end(), row + margin, row + (patch.width - margin));
  }
  return part;
}

double share_of_dots(unsigned tone, unsigned levels) {
  const double level = tone / 255.0 * (levels - 1);
  return level - std::floor(level);
}

// A patch of at least `side` pixels each way, as it looks far from its edges.
ink_plane settled_patch(const halftone_choice& choice, const report_options& options, unsigned side, unsigned tone) {
  const unsigned margin = choice.dither ? 0 : settling, width = whole_tiles(choice, side) + 2 * margin;
  const auto by = make_halftone(choice, 1, options.levels, options.noise, width, ed_precision::samples16);
  return inner(flat_patch(*by, width, width - margin, tone, 16), margin);
}

tone_spectrum measure_spectrum(const halftone_choice& choice, const report_options& options, unsigned tone) {
  const power_spectrum spectrum = spectrum_of(settled_patch(choice, options, spectrum_side, tone));
  return {tone, share_of_dots(tone, options.levels), radial_power(spectrum), strongest_direction(spectrum)};
}

// Tones at even distances, among them no multiples of what small matrices hold, and those where seams may be.
constexpr unsigned noise_step = 8, first_noise_tone = 3;

void measure_patch_noise(choice_report& report, const report_options& options) {
  std::set<unsigned> tones;
  for (const unsigned tone : seam_tones()) tones.insert(tone);
  for (unsigned tone = first_noise_tone; tone < 255; tone += noise_step) tones.insert(tone);
  std::vector<double> by_tone(256);
  visible_noise sum;
  unsigned even = 0;
  for (const unsigned tone : tones) {
    const visible_noise noise = measure_noise(settled_patch(report.choice, options, noise_side, tone), options.view);
    report.noise.push_back({tone, noise});
    by_tone[tone] = noise.eye;
    if (tone % noise_step != first_noise_tone) continue;
    sum = {sum.fine + noise.fine, sum.coarse + noise.coarse, sum.eye + noise.eye};
    ++even;
  }
  report.mean_noise = {sum.fine / even, sum.coarse / even, sum.eye / even};
  report.noise_seam = measure_seam(by_tone);
  std::vector<double> errors{0};
  errors.insert(errors.end(), report.errors16.begin(), report.errors16.end());
  report.tone_seam = measure_seam(errors);
}

rim measure_tint(const halftone_choice& choice, const report_options& options, double tone) {
  constexpr unsigned width = 1024, height = 256;
  const auto by = make_halftone(choice, 1, options.levels, options.noise, width, ed_precision::samples16);
  const std::vector<std::uint16_t> line(width, std::uint16_t(std::lround(tone * 65535)));
  return measure_rim(dots_of_lines(*by, width, height, line.data()), tone);
}

}  // namespace

std::size_t worst(const tone_errors& errors) {
  const auto furthest =
      std::max_element(errors.begin(), errors.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
  return std::size_t(furthest - errors.begin());
}

bool choice_report::keeps_tone() const {
  return std::abs(errors8[worst(errors8)]) < tone_bar && std::abs(errors16[worst(errors16)]) < tone_bar;
}

const tone_spectrum& choice_report::cloudiest() const {
  return *std::max_element(spectra.begin(), spectra.end(), [](const tone_spectrum& a, const tone_spectrum& b) {
    return low_power(a.power, a.share) < low_power(b.power, b.share);
  });
}

const tone_spectrum& choice_report::coarsest() const {
  return *std::max_element(spectra.begin(), spectra.end(), [](const tone_spectrum& a, const tone_spectrum& b) {
    return hump(a.power, a.share).power < hump(b.power, b.share).power;
  });
}

const tone_noise& choice_report::noisiest() const {
  return *std::max_element(noise.begin(), noise.end(),
                           [](const tone_noise& a, const tone_noise& b) { return a.noise.eye < b.noise.eye; });
}

const direction& choice_report::strongest_lines() const {
  return std::max_element(spectra.begin(), spectra.end(),
                          [](const tone_spectrum& a, const tone_spectrum& b) { return a.lines.ratio < b.lines.ratio; })
      ->lines;
}

std::vector<halftone_choice> chosen(const report_options& options) {
  const std::vector<halftone_choice> all = halftone_choices();
  if (options.only.empty()) return all;
  std::vector<halftone_choice> choices;
  for (const std::string& name : options.only) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const halftone_choice& c) { return c.name == name; });
    if (found == all.end()) {
      std::string names;
      for (const halftone_choice& c : all) names += (names.empty() ? "" : ", ") + c.name;
      throw usage_error("--only " + name + ": no filter and no matrix, expected some of " + names);
    }
    choices.push_back(*found);
  }
  return choices;
}

std::vector<choice_report> measure(const std::vector<halftone_choice>& choices, const report_options& options) {
  std::vector<choice_report> reports;
  for (const halftone_choice& choice : choices) reports.push_back({choice, {}, {}, {}});
  progress bar(unsigned(choices.size()));
  std::mutex one;
  tbb::parallel_for(std::size_t{0}, choices.size(), [&](std::size_t i) {
    choice_report& report = reports[i];
    report.errors8 = measure_tones(report.choice, options, ed_precision::bits8);
    report.errors16 = measure_tones(report.choice, options, ed_precision::samples16);
    for (const unsigned tone : options.tones) report.spectra.push_back(measure_spectrum(report.choice, options, tone));
    measure_patch_noise(report, options);
    for (std::size_t t = 0; t < rim_tones.size(); ++t) {
      report.rims[t] = measure_tint(report.choice, options, rim_tones[t]);
    }
    const std::lock_guard guard(one);
    bar.step();
  });
  return reports;
}

}  // namespace vrk::tool
