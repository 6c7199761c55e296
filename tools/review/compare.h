// One crop of a picture, halftoned by every filter and matrix of the kit, side by side.
#pragma once

#include <optional>

#include "tools/files/output_set.h"
#include "tools/image/image_reader.h"
#include "tools/image/window.h"

namespace vrk::tool {

struct compare_options {
  std::optional<unsigned> inks{};       // 1, 4 or 6; default 4
  unsigned levels = 2;                  // of a dot
  bool noise = true;                    // modulation of the thresholds of error diffusion
  unsigned enlargement = 4;             // side of a dot on the sheet, in pixels
  std::optional<pixel_place> centre{};  // of the crop; by default the picture's
};

// Draws a sheet of labelled cells: the inks before halftoning, then the dots of every halftone_choice. The crop is as
// large as fits into a cell, or the whole picture if that is smaller.
void write_comparison(image_reader& source, const compare_options& options, output_file& to);

}  // namespace vrk::tool
