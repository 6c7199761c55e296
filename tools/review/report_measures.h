// What the kit's filters and matrices make of flat patches: whether the tone is the one asked for, and whether the dots
// lie evenly.
#pragma once

#include <filesystem>
#include <vector>

#include "tools/review/halftone_choices.h"
#include "tools/review/report_spectrum.h"

namespace vrk::tool {

struct report_options {
  unsigned levels = 2;  // of a dot
  bool noise = true;    // modulation of the thresholds of error diffusion
  unsigned tone = 96;   // of the patch whose spectrum is taken, 1 ... 254
};

// The part of that patch that gets the higher one of the two levels around its tone.
double share_of_dots(const report_options& options);

// Entry t - 1: ink placed less ink asked for, as a share of full ink, over a patch of tone t = 1 ... 254.
using tone_errors = std::vector<double>;

// The entry furthest from 0.
std::size_t worst(const tone_errors& errors);

// A tone is missed by more than this share of full ink, or it is not.
inline constexpr double tone_bar = 0.005;

struct choice_report {
  halftone_choice choice;
  tone_errors errors8, errors16;  // of 8-bit samples at 8-bit precision, of 16-bit samples
  std::vector<double> power;      // radial_power of the one patch, 16-bit samples

  bool keeps_tone() const;
};

std::vector<choice_report> measure(const report_options& options);

// The table on standard output, with a sentence for each bar that is missed.
void show(const std::vector<choice_report>& reports, const report_options& options);

// A sheet with a plot for every choice each.
void plot_tones(const std::vector<choice_report>& reports, const report_options& options,
                const std::filesystem::path& file);
void plot_spectra(const std::vector<choice_report>& reports, const report_options& options,
                  const std::filesystem::path& file);

}  // namespace vrk::tool
