// Flat patches as planes of dots: what the report measures.
#pragma once

#include <vector>

#include "tools/pipeline/halftone.h"

namespace vrk::tool {

// Dots row by row, each as a share of full ink.
struct pattern {
  unsigned width = 0, height = 0;
  std::vector<float> ink{};

  double mean() const;
};

// The dots of a patch of one tone. by: a new halftone for one plane, as wide as the patch.
// tone: 0 ... 255 of full ink; bits: of the samples that the halftone takes, 8 or 16.
pattern flat_patch(halftone& by, unsigned width, unsigned height, unsigned tone, unsigned bits);

}  // namespace vrk::tool
