// How error diffusion comes to a tone before its first line: lines of that tone run ahead of it and are dropped.
#pragma once

#include <cstdint>
#include <vector>

namespace vrk::tool {

// Without errors from a line above, a light tint has no dot until its errors have added up to one: 18 lines of 1 %.
// It has come to its tone after the lines in which every column gets ink for one dot, whatever the filter: 100 of 1 %.
// The same holds for few holes in a dark tint, and between two levels of several. At most 255, the lightest tone of
// 8 bits; 0 where every sample is what a level stands for.
// line: `pixels` pixels of as many samples as `level_values` has planes. Sample: std::uint8_t or std::uint16_t.
template <class Sample>
unsigned warm_up_lines(const Sample* line, std::uint32_t pixels,
                       const std::vector<std::vector<std::uint16_t>>& level_values);

}  // namespace vrk::tool
