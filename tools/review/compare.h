// One crop of a picture, halftoned by every filter and matrix of the kit, side by side.
#pragma once

#include <filesystem>
#include <optional>

#include "tools/image/image_reader.h"
#include "tools/print/preview.h"

namespace vrk::tool {

struct compare_options {
  std::optional<unsigned> inks{};         // 1, 4 or 6; 4 unless given
  unsigned levels = 2;                    // of a dot
  bool noise = true;                      // modulation of the thresholds of error diffusion
  unsigned enlargement = 4;               // a dot's side on the sheet
  std::optional<detail::place> centre{};  // of the crop, in pixels; the picture's unless given
};

// Draws a sheet of labelled cells: the inks as they were asked for, then the dots of every halftone_choice. A crop is
// as large as the picture lets it be and as fits a cell.
void write_comparison(image_reader& source, const compare_options& options, const std::filesystem::path& file);

}  // namespace vrk::tool
