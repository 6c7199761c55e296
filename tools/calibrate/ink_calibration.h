// The curve of one ink from its ramp, and how far the ramp is from what it is to be, before and after.
#pragma once

#include <optional>

#include "kit/calibration.h"
#include "tools/calibrate/measured_inks.h"

namespace vrk::tool {

// The least that full tone has to differ from paper in lightness, for lightness to say how even a ramp is.
inline constexpr double least_lightness_range = 20;

struct ink_calibration {
  std::string_view plane;
  const char* unit;                        // of what the steps show
  std::vector<kit::measured_point> steps;  // 0 at paper
  kit::calibration made;

  struct difference {
    double before, after;
  };
  difference error_at(double asked) const;  // shown, less what is to be shown
};

// Without a gain the ramp becomes even: in lightness L*, or, where the ink is nearly as light as paper (yellow), in the
// difference from paper, delta E*ab. gain: at half tone, 0 ... 0.25; tones are then tone values as of ISO 12647-1, from
// X - 0.55 Z for cyan, Z for yellow, and Y for the others. plane: index of the ink. Throws user_error, with `name` in
// front, when the ramp does not lead from paper to full tone.
ink_calibration calibrate_ink(const measured_ramp& ramp, std::size_t plane, std::optional<double> gain,
                              const std::string& name);

// The steps that are not above the one before them, in percent.
std::vector<double> falling_steps(const ink_calibration& ink);

}  // namespace vrk::tool
