// Flat patches as planes of dots: what the report measures.
#pragma once

#include "tools/pipeline/halftone.h"
#include "tools/review/measure/ink_plane.h"

namespace vrk::tool {

// The dots of a patch of one tone. by: a new halftone for one plane, as wide as the patch.
// tone: 0 ... 255 of full ink; bits: of the samples that the halftone takes, 8 or 16.
ink_plane flat_patch(halftone& by, unsigned width, unsigned height, unsigned tone, unsigned bits);

// The same of any line, repeated.
ink_plane dots_of_lines(halftone& by, unsigned width, unsigned height, const void* line);

}  // namespace vrk::tool
