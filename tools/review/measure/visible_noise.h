// How rough a plane looks: what its dots add to the ink that they stand for, after a blur.
#pragma once

#include "tools/review/measure/eye.h"

namespace vrk::tool {

// Root of the mean square, in percent of full ink.
struct visible_noise {
  double fine = 0, coarse = 0;  // after Gaussians with standard deviations of 2 and of 4 pixels
  double eye = 0;               // after an eye's contrast sensitivity
};

// dots - ink without the tone curve: without the part of the difference that depends on the tone alone, smoothly, and
// that a calibration of the printer would remove. Both planes of one size.
ink_plane difference_without_tone_curve(const ink_plane& dots, const ink_plane& ink);

// Pixels near the edges are not counted, where blurs know one half of the neighbours only.
visible_noise measure_noise(const ink_plane& dots, const ink_plane& ink, const viewing& view);

// Dots of one tone, whatever it is.
visible_noise measure_noise(const ink_plane& dots, const viewing& view);

}  // namespace vrk::tool
