#include "tools/pipeline/halftone.h"

#include <bit>

#include "tools/pipeline/handle.h"

namespace vrk::tool {
namespace {

constexpr std::string_view plane_names[] = {"k", "c", "m", "y", "lc", "lm"};

}  // namespace

void halftone::describe_planes(const table& parameters, const vrk_ht_info& info, const std::uint8_t (&bits)[6],
                               const std::array<std::vector<std::uint16_t>, 6>& values, double full) {
  std::size_t offset = 0;
  for (std::size_t p = 0; p < info.plane_count; ++p) {
    const unsigned plane_bits = bits[p];
    if (!std::has_single_bit(plane_bits) || plane_bits > 8) {
      refuse(parameters, "has " + std::to_string(plane_bits) + " bits per pixel, expected 1, 2, 4 or 8");
    }
    std::vector<double> ink;
    if (info.dot_expansion != 0) {  // a dot of a cell is there or not; how many there are is up to the level
      ink = {0, 1};
    } else {
      for (const std::uint16_t value : values[p]) ink.push_back(value / full);
    }
    const auto [scale_x, scale_y] = info.plane_scale[p];
    planes_.push_back({plane_names[p], plane_bits, ink, scale_x, scale_y, info.line_bytes[p], offset});
    offset += std::size_t{scale_y} * info.line_bytes[p];
  }
}

}  // namespace vrk::tool
