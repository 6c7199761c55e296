// Curves from measured ramps of an ink.
#pragma once

#include <optional>

#include "kit/curve_image.h"
#include "kit/smoothing.h"

namespace vrk::kit {

struct calibration {
  curve tone;          // from the tone that is asked for to the one to print, as post-processing takes it
  double paper, full;  // what is shown at both ends, smoothed
  double gain;

  // What is to be shown where `asked` (0 ... 1) is asked for.
  double aim(double asked) const { return paper + (full - paper) * (asked + 4 * gain * asked * (1 - asked)); }
};

// steps: what printed tones (`at`, from 0, paper, to 1, full) show on paper, in a unit that rises with the tone. The
// curve makes it rise evenly, or with a dot gain as of dot_gain_compensation. Steps are smoothed, and those that fall
// pooled. None when the steps do not rise from paper to full.
std::optional<calibration> calibrate(std::span<const measured_point> steps, double gain = 0);

// What the steps show where `printed` is printed, and where the curve prints for `asked`: straight lines between what
// was measured.
double shown(std::span<const measured_point> steps, double printed);
double shown(std::span<const measured_point> steps, const curve& tone, double asked);

}  // namespace vrk::kit
