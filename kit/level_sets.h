// Output levels of a plane: how many, where they lie, how many bits they take.
#pragma once

#include <cstdint>
#include <vector>

namespace vrk::kit {

// Bits per output pixel (1, 2, 4 or 8) that so many levels (2 ... 256) take.
unsigned bits_for_levels(unsigned levels);

// Levels spread evenly over 0 ... top: 1023 for "edpr"; 255, or 1023 for 16-bit input, for "dith".
std::vector<std::uint16_t> even_levels(unsigned levels, unsigned top = 1023);

// Thresholds halfway between neighbouring levels.
std::vector<std::uint16_t> halfway_thresholds(const std::vector<std::uint16_t>& level_values);

}  // namespace vrk::kit
