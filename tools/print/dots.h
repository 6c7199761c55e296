// Packed lines unpacked into dots: their codes, their ink, their colours on paper.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/pipeline/halftone.h"
#include "tools/print/dot_colors.h"
#include "tools/print/packed_codes.h"

namespace vrk::tool {

// One row of dots at a time. Planes may differ in scale: rows and columns are those of the finest grid into which all
// planes fit, and a dot of a coarser plane covers several of its places.
class dots {
 public:
  // width: pixels of a line
  dots(const std::vector<plane_format>& planes, std::uint32_t width, const dot_colors& look = {});

  dot_scale scale() const { return scale_; }

  // Where the row of a plane begins in a line of pixels as the halftone wrote it.
  const std::uint8_t* packed_line(const std::uint8_t* packed, unsigned row, std::size_t plane) const {
    const plane_format& format = *planes_[plane].format;
    return packed + format.offset + row * format.scale.y / scale_.y * format.line_bytes;
  }

  // Takes row 0 ... scale().y - 1 of a line of pixels, as the halftone wrote it.
  void read_row(const std::uint8_t* packed, unsigned row);

  // The row: the codes of one plane in its own scale, and the colours of all planes together. Every call computes them,
  // from packed lines that are still where they were.
  const std::vector<std::uint8_t>& codes(std::size_t plane);
  const std::vector<light>& colors();

  // Adds the light of the row to sums, from left to right: that of the first `across` places to the first, and so on.
  void add_light(unsigned across, std::vector<light>& sums);

  // The mean ink of a plane over all rows so far: 0 ... 1, a share of full ink.
  double coverage(std::size_t plane) const;

 private:
  struct plane {
    const plane_format* format;
    unsigned repeat_x;  // columns of the finest grid that one dot covers
    std::vector<std::uint8_t> codes;
    code_counts counts;            // over all rows
    const std::uint8_t* packed{};  // the row
  };
  // Neighbouring planes. Their codes, read as the digits of one number, index a table of colours.
  struct palette {
    std::size_t first, end;  // planes
    bool alike;              // all planes have the same bits, and no dot is wider than a place
    std::vector<light> colors;
    std::vector<weighted_codes> digits;  // of each plane
  };

  void add_palette(std::size_t first, std::size_t end, std::size_t colors);
  void read_index(const palette& of);
  void compute_colors();

  dot_scale scale_;
  dot_colors look_;
  std::vector<plane> planes_;
  std::vector<palette> palettes_;  // the colour of a place is the product of one colour of each; none: it is computed
  std::vector<weighted_codes::number> index_, coarse_;  // of the row, and of one plane in its own scale
  std::vector<light> colors_;
  std::uint64_t rows_ = 0;
};

}  // namespace vrk::tool
