// Every way of the kit to make dots: its error filters and its threshold matrices.
#pragma once

#include <string>
#include <vector>

#include "tools/pipeline/halftone.h"

namespace vrk::tool {

struct halftone_choice {
  std::string name;
  bool dither;  // by a threshold matrix; else error diffusion by an error filter
};

// The filters in the kit's order, then the matrices.
std::vector<halftone_choice> halftone_choices();

// Levels are spread evenly. noise: modulation of the thresholds of error diffusion. precision: of dither, only whether
// its samples have 16 bits.
std::unique_ptr<halftone> make_halftone(const halftone_choice& choice, unsigned planes, unsigned levels, bool noise,
                                        std::uint32_t width, ed_precision precision = ed_precision::bits10);

}  // namespace vrk::tool
