// The curves of a curve image, by name.
#pragma once

#include "kit/curve_image.h"
#include "tools/pipeline/table.h"

namespace vrk::tool {

struct named_curves {
  kit::curve_image image;
  std::vector<std::string> names;  // of image.curves
};

// Of an image that a stage takes.
named_curves read_curves(const table& image);

}  // namespace vrk::tool
