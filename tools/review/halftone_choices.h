// Every halftone of the kit: its error filters and its threshold matrices.
#pragma once

#include <string>
#include <vector>

#include "tools/pipeline/halftone.h"

namespace vrk::tool {

struct halftone_choice {
  std::string name;
  bool dither;  // true: a threshold matrix; false: an error filter
};

// The filters in the kit's order, then the matrices.
std::vector<halftone_choice> halftone_choices();

// Levels are spread evenly. noise: modulation of the thresholds of error diffusion. precision: a dither only
// distinguishes 16-bit samples from others.
std::unique_ptr<halftone> make_halftone(const halftone_choice& choice, unsigned planes, unsigned levels, bool noise,
                                        std::uint32_t width, ed_precision precision = ed_precision::bits10);

}  // namespace vrk::tool
