// Measures of the kit's filters and matrices on flat patches of black.
#pragma once

#include <array>
#include <vector>

#include "tools/review/halftone_choices.h"
#include "tools/review/measure/spectrum.h"
#include "tools/review/measure/tints.h"
#include "tools/review/measure/visible_noise.h"
#include "tools/review/report_options.h"
#include "tools/review/report_patch.h"

namespace vrk::tool {

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
  direction lines{};
};

// Noise of one tone.
struct tone_noise {
  unsigned tone;
  visible_noise noise;
};

// Of 1, 3 and 5 %: tones whose first dots come late.
inline constexpr std::array<double, 3> rim_tones{0.01, 0.03, 0.05};

struct choice_report {
  halftone_choice choice;
  tone_errors errors8, errors16;       // of 8-bit samples at 8-bit precision, of 16-bit samples
  std::vector<tone_spectrum> spectra;  // of report_options::tones, 16-bit samples

  std::vector<tone_noise> noise{};  // of tones by number, 16-bit samples
  visible_noise mean_noise{};       // of tones that stand at even distances
  seam noise_seam{}, tone_seam{};   // of the noise that an eye sees; of errors16
  std::array<rim, rim_tones.size()> rims{};

  bool keeps_tone() const;
  const tone_noise& noisiest() const;  // to the eye
  const direction& strongest_lines() const;

  // The spectrum with the most power at low frequencies, and the one with the highest hump.
  const tone_spectrum& cloudiest() const;
  const tone_spectrum& coarsest() const;
};

// The halftones that the options name, or all. Throws usage_error for an unknown name.
std::vector<halftone_choice> chosen(const report_options& options);

std::vector<choice_report> measure(const std::vector<halftone_choice>& choices, const report_options& options);

}  // namespace vrk::tool
