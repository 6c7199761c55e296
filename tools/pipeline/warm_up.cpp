#include "tools/pipeline/warm_up.h"

#include <algorithm>
#include <limits>

namespace vrk::tool {
namespace {

constexpr std::uint32_t most_lines = 255, full_value = 1023;

// Lines in which a sample puts ink for one step from level to level into a column, or leaves out as much.
std::uint32_t lines_for(std::uint32_t sample, std::uint32_t full_sample, const std::vector<std::uint16_t>& values) {
  const auto above = std::find_if(values.begin(), values.end(),
                                  [&](std::uint32_t value) { return value * full_sample > sample * full_value; });
  if (above == values.begin() || above == values.end()) return 0;  // the last level's value, or outside all of them
  const std::uint32_t low = above[-1] * full_sample, high = *above * full_sample, value = sample * full_value;
  const std::uint32_t distance = std::min(value - low, high - value);
  return distance == 0 ? 0 : std::min((high - low) / distance, most_lines);
}

}  // namespace

template <class Sample>
unsigned warm_up_lines(const Sample* line, std::uint32_t pixels,
                       const std::vector<std::vector<std::uint16_t>>& level_values) {
  constexpr std::uint32_t full_sample = std::numeric_limits<Sample>::max();
  const std::size_t planes = level_values.size();
  std::uint32_t most = 0;
  for (std::size_t p = 0; p < planes; ++p) {
    std::uint32_t last = 0;  // white needs none
    for (std::size_t x = 0; x < pixels && most < most_lines; ++x) {
      const std::uint32_t sample = line[x * planes + p];
      if (sample != 0 && sample != last) most = std::max(most, lines_for(sample, full_sample, level_values[p]));
      last = sample;
    }
  }
  return most;
}

template unsigned warm_up_lines(const std::uint8_t*, std::uint32_t, const std::vector<std::vector<std::uint16_t>>&);
template unsigned warm_up_lines(const std::uint16_t*, std::uint32_t, const std::vector<std::vector<std::uint16_t>>&);

}  // namespace vrk::tool
