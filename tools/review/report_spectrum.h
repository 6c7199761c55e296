// Power spectrum of a pattern of dots, averaged over all directions.
// R. A. Ulichney, Digital Halftoning, MIT Press 1987: radially averaged power spectra.
#pragma once

#include "tools/review/report_patch.h"

namespace vrk::tool {

// The spectrum is the mean over square windows of this side, which overlap by half. A pattern must hold at least one.
inline constexpr unsigned spectrum_window = 256;

// Entry i: mean power of the frequencies whose distance from zero rounds to i / spectrum_window cycles per pixel, up to
// the corner of the spectrum at the root of one half. White noise has 1 everywhere; a pattern without contrast has 0
// everywhere. The mean tone is subtracted first.
std::vector<double> radial_power(const pattern& dots);

// Ulichney's principal frequency, in cycles per pixel: of dots that cover this share (0 ... 1) of a patch and lie as
// far apart as possible. At most one half, which it is from a quarter to three quarters; at least 1 / 16, below which a
// window shows too little.
double principal_frequency(double share);

// Mean power from the second lowest frequency up to a quarter of the principal one. High values are visible as clouds.
double low_power(const std::vector<double>& power, double share);

struct spectrum_peak {
  double power, frequency;  // cycles per pixel
};

// The largest power below half of the principal frequency. Above 1 the pattern has a structure coarser than its dots.
spectrum_peak hump(const std::vector<double>& power, double share);

// A power in decibels: 0 for white noise, at least -60.
double decibels(double power);

}  // namespace vrk::tool
