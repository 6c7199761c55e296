// Output levels of a plane: their number, their values, their bits.
#pragma once

#include <cstdint>
#include <vector>

namespace vrk::kit {

// Bits per output pixel (1, 2, 4 or 8) for a number of levels (2 ... 256).
unsigned bits_for_levels(unsigned levels);

// Levels spread evenly over 0 ... top: 1023 for "edpr"; 255, or 1023 for 16-bit input, for "dith".
std::vector<std::uint16_t> even_levels(unsigned levels, unsigned top = 1023);

// Thresholds halfway between neighbouring levels.
std::vector<std::uint16_t> halfway_thresholds(const std::vector<std::uint16_t>& level_values);

}  // namespace vrk::kit
