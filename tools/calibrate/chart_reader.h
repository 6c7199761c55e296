// A step chart as a picture.
#pragma once

#include <memory>

#include "tools/calibrate/step_chart.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {

// A sample for each ink, in plane order. bits: of a sample, 8 or 16. chart: has to live as long.
std::unique_ptr<image_reader> read_chart(const step_chart& chart, paper_size paper, resolution dpi, unsigned bits);

}  // namespace vrk::tool
