// From packed plane lines back to the dots on the paper: their codes, how much ink they are, what they look like.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/pipeline/halftone.h"

namespace vrk::tool {

using light = std::array<float, 3>;  // linear R, G, B, 0 ... 1 (paper white)

// Dots across and down that a pixel of the picture becomes.
struct dot_scale {
  unsigned x = 1, y = 1;
};

// The dots of one row after the other. Where planes differ in scale, the rows are those of the finest, and the dots of
// the others count as several.
class dots {
 public:
  // width: pixels of a line
  dots(const std::vector<plane_line>& planes, std::uint32_t width);

  dot_scale scale() const { return scale_; }

  // Takes row 0 ... scale().y - 1 of a line of pixels, as the halftone wrote it.
  void read_row(const std::uint8_t* packed, unsigned row);

  // The row as a plane has it, and its pixels under the kit's ink model.
  const std::vector<std::uint8_t>& codes(std::size_t plane) const { return planes_[plane].codes; }
  const std::vector<light>& colors() const { return colors_; }

  // The share of full ink that a plane laid down in all rows so far, 0 ... 1.
  double coverage(std::size_t plane) const;

 private:
  struct plane {
    const plane_line* line;
    unsigned repeat_x;  // columns that one dot counts as
    std::vector<std::uint8_t> codes;
    std::vector<std::uint64_t> counts;  // of each code, over all rows
  };
  // Neighbouring planes whose codes together, as digits, pick one colour of a table.
  struct palette {
    std::size_t first = 0, end = 0;  // planes
    std::vector<light> colors{light{1, 1, 1}};
  };

  void find_colors();

  dot_scale scale_;
  std::vector<plane> planes_;
  std::vector<palette> palettes_;  // a pixel's colour is the product of their colours, as inks filter light
  std::vector<std::uint16_t> index_;
  std::vector<light> colors_;
  std::uint64_t rows_ = 0;
};

}  // namespace vrk::tool
