// Modulation matrices of error diffusion: small amounts taken off a value before its level is chosen.
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

// Every threshold stays where it is.
modulation no_modulation();

// Blue noise, other pixels for every plane: breaks up the worms of a filter and keeps planes of equal tone from putting
// their dots on the same pixels. amplitude: 0 ... 127, on the 10-bit scale.
modulation fine_noise(int amplitude = 127);

// As strong as so many levels bear: an eighth of the way from one to the next. Much more, and the errors that the noise
// itself makes keep setting dots on bare paper.
modulation fine_noise_for(unsigned levels);

}  // namespace vrk::kit
