// From packed plane lines back to the dots on the paper: their codes, how much ink they are, what they look like.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/pipeline.h"

namespace vrk::tool {

using light = std::array<float, 3>;  // linear R, G, B, 0 ... 1 (paper white)

// The dots of one line after the other.
class dots {
 public:
  dots(const std::vector<plane_line>& planes, std::uint32_t width);

  // Takes the line that the planes hold now.
  void read_line(const std::vector<plane_line>& planes);

  const std::vector<std::uint8_t>& codes(std::size_t plane) const { return planes_[plane].codes; }
  // The line's pixels under the kit's ink model.
  const std::vector<light>& colors() const { return colors_; }
  // The share of full ink that a plane laid down in all lines so far, 0 ... 1.
  double coverage(std::size_t plane) const;

 private:
  struct plane {
    std::vector<std::uint8_t> codes;
    std::vector<double> ink;            // of each code
    std::vector<std::uint64_t> counts;  // of each code, over all lines
  };
  // Neighbouring planes whose codes together, as digits, pick one colour of a table.
  struct palette {
    std::size_t first = 0, end = 0;  // planes
    std::vector<light> colors{light{1, 1, 1}};
  };

  void find_colors();

  std::vector<plane> planes_;
  std::vector<palette> palettes_;  // a pixel's colour is the product of their colours, as inks filter light
  std::vector<std::uint16_t> index_;
  std::vector<light> colors_;
  std::uint64_t lines_ = 0;
};

}  // namespace vrk::tool
