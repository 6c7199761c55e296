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

double percent_off(double share) { return 100 * (share - 1); }

// The tint that is furthest from its tone there.
template <class Part>
double worst_rim(const choice_report& r, Part part) {
  double worst = 1;
  for (const rim& of : r.rims) {
    if (std::abs(part(of) - 1) > std::abs(worst - 1)) worst = part(of);
  }
  return percent_off(worst);
}

void show_view(const report_options& options) {
  std::printf(
      "RMS of dots less ink, %% of full ink, after Gaussians of 2 and 4 pixels and after an eye at %g cm, %g dpi",
      options.view.distance_cm, options.view.dpi);
}

}  // namespace

void show(const std::vector<choice_report>& reports, const report_options& options) {
  std::string tones;
  for (const unsigned tone : options.tones) tones += (tones.empty() ? "" : ", ") + std::to_string(tone);
  std::printf("Flat patches of black, the worst of all tones, and of the spectra of tones %s (white noise: 0 dB)\n\n",
              tones.c_str());
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
  show_view(options);
  std::printf(
      ";\nlines: power along an axis or diagonal over the mean of all directions; seams: noise around quarter tones "
      "in relation to\ntheir neighbours', and step of the tone; rim: ink in the first 12 lines and outer 12 "
      "columns of 1, 3 and 5 %%, less the tone\n\n");
  std::printf(
      "                    mean noise         worst               lines           seams               rim, %% of "
      "tone\n");
  std::printf(
      "                     2 px  4 px   eye   eye                                noise       tone    lines  "
      "columns\n");
  for (const choice_report& r : reports) {
    const visible_noise& mean = r.mean_noise;
    const tone_noise& worst = r.noisiest();
    const direction& lines = r.strongest_lines();
    std::printf("  %-16s %6.2f%6.2f%6.2f %5.2f at %-3u  %6.1f at %3d deg  %5.2f at %-3u %+6.2f %%  %+6.0f %+6.0f\n",
                r.choice.name.c_str(), mean.fine, mean.coarse, mean.eye, worst.noise.eye, worst.tone, lines.ratio,
                lines.degrees, r.noise_seam.ratio, r.noise_seam.tone, 100 * r.tone_seam.step,
                worst_rim(r, [](const rim& of) { return of.lines; }),
                worst_rim(r, [](const rim& of) { return of.columns; }));
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

void show(const std::vector<photograph_row>& rows, const std::vector<photograph>& photographs,
          const report_options& options) {
  std::string names;
  for (const photograph& p : photographs) names += (names.empty() ? "" : ", ") + p.name;
  std::printf("%s, in %zu inks, means over the pictures\n", names.c_str(), photographs[0].asked.size());
  show_view(options);
  std::printf(
      ";\ncolours of the overlaid dots by S-CIELAB: mean delta E, RMS of the errors of lightness and chroma, "
      "mean shift of a* and b*\n\n");
  std::printf(
      "                      K            M            all planes          colours                             "
      "lines\n");
  std::printf("                       2 px  4 px   2 px  4 px   2 px  4 px   eye   dE    L*  chroma   a*     b*\n");
  for (const photograph_row& r : rows) {
    const photograph_figures mean = r.mean();
    const visible_noise all = mean.mean_noise();
    std::printf("  %-18s", r.name.c_str());
    for (const std::size_t plane : {0, 2}) {
      if (mean.noise[plane]) {
        std::printf(" %6.2f%6.2f", mean.noise[plane]->fine, mean.noise[plane]->coarse);
      } else {
        std::printf("      -     -");
      }
    }
    std::printf(" %6.2f%6.2f%6.2f", all.fine, all.coarse, all.eye);
    if (mean.overlay) {
      const overlay_error& o = *mean.overlay;
      std::printf(" %6.2f%6.2f%6.2f  %+6.2f %+6.2f", o.delta_e, o.lightness, o.chroma, o.mean_a, o.mean_b);
    } else {
      std::printf("      -     -     -       -      -");
    }
    std::printf(" %5.1f at %3d deg\n", mean.lines.ratio, mean.lines.degrees);
  }
}

}  // namespace vrk::tool
