// Measures of the kit's filters and matrices on flat patches: the error of the tone, and the spectrum of the dots.
#pragma once

#include <vector>

#include "tools/review/halftone_choices.h"
#include "tools/review/report_spectrum.h"

namespace vrk::tool {

struct report_options {
  unsigned levels = 2;  // of a dot
  bool noise = true;    // modulation of the thresholds of error diffusion
  unsigned tone = 96;   // of the patch whose spectrum is taken, 1 ... 254
};

// The share of that patch whose dots have the higher one of the two levels around its tone.
double share_of_dots(const report_options& options);

// Entry t - 1: ink placed less ink asked for, as a share of full ink, over a patch of tone t = 1 ... 254.
using tone_errors = std::vector<double>;

// The entry furthest from 0.
std::size_t worst(const tone_errors& errors);

// A choice keeps its tones when no error is larger than this share of full ink.
inline constexpr double tone_bar = 0.005;

struct choice_report {
  halftone_choice choice;
  tone_errors errors8, errors16;  // of 8-bit samples at 8-bit precision, of 16-bit samples
  std::vector<double> power;      // radial_power of the patch of report_options::tone, 16-bit samples

  bool keeps_tone() const;
};

std::vector<choice_report> measure(const report_options& options);

}  // namespace vrk::tool
