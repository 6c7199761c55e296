// Power spectrum of a plane of dots, over all directions and by direction.
// R. A. Ulichney, Digital Halftoning, MIT Press 1987: radially averaged power spectra, anisotropy.
#pragma once

#include "tools/review/measure/ink_plane.h"

namespace vrk::tool {

// The spectrum is the mean over square windows of this side, which overlap by half. A plane must hold at least one.
inline constexpr unsigned spectrum_window = 256;

// The mean tone is subtracted first. White noise has 1 everywhere; a plane without contrast has 0 everywhere.
struct power_spectrum {
  // Of the frequency x, y in windows: x = 0 ... half a window, y = 0 ... a window less 1, those above half are
  // negative. Frequencies of negative x mirror these.
  std::vector<double> power;
  double variance = 0;  // of the dots

  double at(unsigned x, unsigned y) const { return power[x * std::size_t{spectrum_window} + y]; }
};

power_spectrum spectrum_of(const ink_plane& dots);

// Entry i: mean power of the frequencies whose distance from zero rounds to i / spectrum_window cycles per pixel, up to
// the corner of the spectrum at the root of one half.
std::vector<double> radial_power(const power_spectrum& of);

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

// Lines and worms: a direction with more power than the others. ratio: mean power within 6 degrees of an axis or a
// diagonal over the mean of all directions, at the frequency where it is largest: 1 for a pattern that is alike in all
// directions, at most 16. Frequencies count from 1 / 16, below which edges of the picture show, to 0.45 cycles per
// pixel, in bands of 1 / 32, where the power after the Gaussian of 2 pixels is not below a hundredth of the whole: what
// no eye sees has no direction.
struct direction {
  double ratio = 1, frequency = 0;  // cycles per pixel
  int degrees = 0;                  // of the wave: 0 for upright lines, 90 for level ones, 45 and 135
};
direction strongest_direction(const power_spectrum& of);

// A power in decibels: 0 for white noise, at least -60.
double decibels(double power);

}  // namespace vrk::tool
