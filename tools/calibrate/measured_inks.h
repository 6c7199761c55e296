// The ramps of single inks in a file of measurements.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "kit/smoothing.h"
#include "tools/calibrate/cgats.h"

namespace vrk::tool {

struct measured_step {
  double tone;                     // 0 (paper) ... 1 (full)
  std::array<double, 3> lab, xyz;  // under D50, xyz as a share of the perfect diffuser
  double patches;                  // of which this is the mean
};

// In rising order of the tones, from paper to full.
using measured_ramp = std::vector<measured_step>;

struct measured_inks {
  std::vector<measured_ramp> ramps;  // of each ink, in plane order: one, four or six
  std::vector<std::string> notes;    // steps that an ink lacks and others have, a sentence for each ink
};

// name: of the file. Throws user_error for columns that are missing, for values that are none, and, naming them, for
// patches without which an ink has no curve.
measured_inks find_ramps(const cgats_table& table, const std::string& name);

}  // namespace vrk::tool
