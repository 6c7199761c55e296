#include "kit/level_sets.h"

namespace vrk::kit {

unsigned bits_for_levels(unsigned levels) {
  unsigned bits = 1;
  while (1u << bits < levels) bits *= 2;
  return bits;
}

std::vector<std::uint16_t> even_levels(unsigned levels, unsigned top) {
  const unsigned steps = levels < 2 ? 1 : levels - 1;
  std::vector<std::uint16_t> values(levels);
  for (unsigned i = 0; i < levels; ++i) values[i] = std::uint16_t((top * i + steps / 2) / steps);
  return values;
}

std::vector<std::uint16_t> halfway_thresholds(const std::vector<std::uint16_t>& level_values) {
  std::vector<std::uint16_t> thresholds;
  for (std::size_t i = 1; i < level_values.size(); ++i) {
    thresholds.push_back(std::uint16_t((level_values[i - 1] + level_values[i] + 1) / 2));
  }
  return thresholds;
}

}  // namespace vrk::kit
