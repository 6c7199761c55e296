#include "tools/review/report_measures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "kit/threshold_matrices.h"
#include "tools/command_line/progress.h"

namespace vrk::tool {
namespace {

constexpr unsigned tone_side = 256, spectrum_side = 1024;  // pixels of the patches, at least

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

// Error diffusion takes some pixels to reach its tone: its patch is cut out of a larger one.
ink_plane settled(const ink_plane& patch, unsigned margin) {
  ink_plane inner{patch.width - 2 * margin, patch.height - margin, {}};
  for (unsigned y = margin; y < patch.height; ++y) {
    const auto row = patch.ink.begin() + std::ptrdiff_t{y} * patch.width;
    inner.ink.insert(inner.ink.end(), row + margin, row + (patch.width - margin));
  }
  return inner;
}

double share_of_dots(unsigned tone, unsigned levels) {
  const double level = tone / 255.0 * (levels - 1);
  return level - std::floor(level);
}

tone_spectrum measure_spectrum(const halftone_choice& choice, const report_options& options, unsigned tone) {
  const unsigned side = whole_tiles(choice, spectrum_side);
  const auto by = make_halftone(choice, 1, options.levels, options.noise, side, ed_precision::samples16);
  const ink_plane patch = flat_patch(*by, side, side, tone, 16);
  return {tone, share_of_dots(tone, options.levels),
          radial_power(spectrum_of(choice.dither ? patch : settled(patch, 64)))};
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

std::vector<choice_report> measure(const report_options& options) {
  std::vector<choice_report> reports;
  const std::vector<halftone_choice> choices = halftone_choices();
  progress bar(unsigned((2 + options.tones.size()) * choices.size()));
  for (const halftone_choice& choice : choices) {
    choice_report report{choice, {}, {}, {}};
    report.errors8 = measure_tones(choice, options, ed_precision::bits8);
    bar.step();
    report.errors16 = measure_tones(choice, options, ed_precision::samples16);
    bar.step();
    for (const unsigned tone : options.tones) {
      report.spectra.push_back(measure_spectrum(choice, options, tone));
      bar.step();
    }
    reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace vrk::tool
