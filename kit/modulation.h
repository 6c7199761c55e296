// Modulation matrices of error diffusion: small amounts that are subtracted from a value before its level is chosen.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace vrk::kit {

struct modulation {
  unsigned width = 1, height = 1;                    // height: a power of two
  unsigned column_shift = 0, row_shift = 0;          // per repeat
  std::array<std::vector<std::int8_t>, 6> planes{};  // record order; row by row, on the 10-bit scale
};

// Leaves every threshold unchanged.
modulation no_modulation();

// Blue noise, different for every plane: it breaks up the worm patterns of a filter, and planes of equal tone do not
// put their dots on the same pixels. amplitude: 0 ... 127, on the 10-bit scale. strength: how many times steeper than
// even the amounts rise; those that would be larger than the amplitude are as large as it.
modulation fine_noise(int amplitude = 127, int strength = 1);

// The strongest useful noise for a number of levels: an eighth of the distance between two levels. With much more, the
// errors of the noise itself would set dots on bare paper.
modulation fine_noise_for(unsigned levels);

// Noise of the same size, most of whose amounts are the largest: it takes more of the coarse noise off the dots, and
// leaves more fine noise, of which the filter "smooth" has little.
modulation strong_noise_for(unsigned levels);

}  // namespace vrk::kit
