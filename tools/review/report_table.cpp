#include "tools/review/report_table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "kit/error_filters.h"
#include "kit/threshold_matrices.h"

namespace vrk::tool {
namespace {

void show_errors(const tone_errors& errors) {
  const std::size_t at = worst(errors);
  std::printf("  %+7.2f at %-3zu", 100 * errors[at], at + 1);
}

// Why a choice cannot keep its tones: a filter that drops part of the error, a matrix with too few steps.
std::string why_off(const halftone_choice& choice, unsigned levels) {
  if (!choice.dither) return std::string(kit::find_error_filter(choice.name)->source);
  const std::size_t cells = kit::plane_matrices(choice.name)[0].ranks.size();
  char text[64];
  std::snprintf(text, sizeof text, "%zu cells make steps of %.2g %%", cells, 100.0 / double(cells) / (levels - 1));
  return text;
}

void show_spectrum(double power, unsigned tone) {
  if (power > 0) {
    std::printf("  %7.1f dB at %-3u", decibels(power), tone);
  } else {
    std::printf("           -      ");
  }
}

}  // namespace

void show(const std::vector<choice_report>& reports, const report_options& options) {
  std::string tones;
  for (const unsigned tone : options.tones) tones += (tones.empty() ? "" : ", ") + std::to_string(tone);
  std::printf("The worst of all tones, and of the spectra of tones %s (white noise: 0 dB)\n\n", tones.c_str());
  std::printf("                   error of tone, %% of full ink        power of the spectrum\n");
  std::printf("                   8 bits            16 bits           low frequencies     coarser than dots\n");
  for (const choice_report& r : reports) {
    std::printf("  %-16s", r.choice.name.c_str());
    show_errors(r.errors8);
    show_errors(r.errors16);
    const tone_spectrum &clouds = r.cloudiest(), &structure = r.coarsest();
    show_spectrum(low_power(clouds.power, clouds.share), clouds.tone);
    show_spectrum(hump(structure.power, structure.share).power, structure.tone);
    std::printf("\n");
  }
  std::printf("\n");
  for (const choice_report& r : reports) {
    if (!r.keeps_tone()) {
      std::printf("%s is more than %.1f %% off: %s.\n", r.choice.name.c_str(), 100 * tone_bar,
                  why_off(r.choice, options.levels).c_str());
    }
    const tone_spectrum& structure = r.coarsest();
    const spectrum_peak peak = hump(structure.power, structure.share);
    if (peak.power > 1) {
      std::printf("%s has a hump: a structure with a period of %.1f pixels, at tone %u.\n", r.choice.name.c_str(),
                  1 / peak.frequency, structure.tone);
    }
  }
}

}  // namespace vrk::tool
