// Power spectrum of a pattern of dots, by distance from zero frequency.
// R. A. Ulichney, Digital Halftoning, MIT Press 1987: radially averaged power spectra.
#pragma once

#include "tools/review/report_patch.h"

namespace vrk::tool {

// The spectrum is the mean over windows of this side, which overlap by half. A pattern is not smaller than one.
inline constexpr unsigned spectrum_window = 256;

// Entry i: mean power of the frequencies whose distance from zero rounds to i / spectrum_window cycles per pixel, up to
// the corner of the spectrum at the root of one half. White noise has 1 everywhere; all 0 for a pattern without any
// contrast. The mean tone is taken off before.
std::vector<double> radial_power(const pattern& dots);

// Cycles per pixel of dots that cover this share (0 ... 1) of a patch and keep as far apart as they can, as Ulichney
// has it: between a quarter and three quarters the grid holds it at one half. Not below what a window can tell, 1 / 16.
double principal_frequency(double share);

// Mean power from the second lowest frequency up to a quarter of the principal one: how much a patch lies in clouds.
double low_power(const std::vector<double>& power, double share);

struct spectrum_peak {
  double power, frequency;  // cycles per pixel
};

// The largest power below half of the principal frequency. Above 1 the pattern shows a structure coarser than its dots.
spectrum_peak hump(const std::vector<double>& power, double share);

// Of a power, white noise having 0. Nothing counts below -60.
double decibels(double power);

}  // namespace vrk::tool
