// Measures of the kit's filters and matrices on flat patches: the error of the tone, and the spectrum of the dots.
#pragma once

#include <vector>

#include "tools/review/halftone_choices.h"
#include "tools/review/measure/spectrum.h"
#include "tools/review/report_patch.h"

namespace vrk::tool {

struct report_options {
  unsigned levels = 2;  // of a dot
  bool noise = true;    // modulation of the thresholds of error diffusion
  // Of the patches whose spectra are taken, 1 ... 254. A small matrix makes a clean pattern of some tones; of these,
  // 96 is one, and most are none.
  std::vector<unsigned> tones{13, 37, 75, 96, 128, 181, 218, 242};
};

// Entry t - 1: ink placed less ink asked for, as a share of full ink, over a patch of tone t = 1 ... 254.
using tone_errors = std::vector<double>;

// The entry furthest from 0.
std::size_t worst(const tone_errors& errors);

// A choice keeps its tones when no error is larger than this share of full ink.
inline constexpr double tone_bar = 0.005;

struct tone_spectrum {
  unsigned tone;
  double share;               // of the dots that have the higher one of the two levels around the tone
  std::vector<double> power;  // radial_power of the patch
};

struct choice_report {
  halftone_choice choice;
  tone_errors errors8, errors16;       // of 8-bit samples at 8-bit precision, of 16-bit samples
  std::vector<tone_spectrum> spectra;  // of report_options::tones, 16-bit samples

  bool keeps_tone() const;

  // The spectrum with the most power at low frequencies, and the one with the highest hump.
  const tone_spectrum& cloudiest() const;
  const tone_spectrum& coarsest() const;
};

std::vector<choice_report> measure(const report_options& options);

}  // namespace vrk::tool
