#include "tools/pipeline/halftone.h"

#include <bit>

namespace vrk::tool {

void halftone::describe_planes(const table& parameters, const vrk_ht_info& info, const std::uint8_t (&bits)[6],
                               const std::array<std::vector<std::uint16_t>, 6>& values, double full) {
  std::size_t offset = 0;
  for (std::size_t p = 0; p < info.plane_count; ++p) {
    if (values[p].empty()) refuse(parameters, "has no levels for K, so that nothing would be printed");
    const unsigned plane_bits = bits[p];
    if (!std::has_single_bit(plane_bits) || plane_bits > 8) {
      refuse(parameters, "has " + std::to_string(plane_bits) + " bits per pixel, expected 1, 2, 4 or 8");
    }
    std::vector<double> ink;
    if (info.dot_expansion != 0) {  // a dot of a cell is there or not: the level decides how many there are
      ink = {0, 1};
    } else {
      for (const std::uint16_t value : values[p]) ink.push_back(value / full);
    }
    const dot_scale scale{info.plane_scale[p].scale_x, info.plane_scale[p].scale_y};
    planes_.push_back({plane_names[p], plane_bits, ink, scale, info.line_bytes[p], offset});
    offset += std::size_t{scale.y} * info.line_bytes[p];
  }
}

}  // namespace vrk::tool
