// A calibration as a picture.
#pragma once

#include "tools/calibrate/ink_calibration.h"
#include "tools/files/output_set.h"

namespace vrk::tool {

// A sheet with a chart for every ink, of what its tones show before and after, and one with all curves.
void plot_calibration(const std::vector<ink_calibration>& inks, const std::string& title, output_file& to);

}  // namespace vrk::tool
