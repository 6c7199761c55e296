#include "kit/modulation.h"

#include <algorithm>

#include "kit/blue_noise.h"

namespace vrk::kit {

modulation no_modulation() {
  modulation none;
  none.planes.fill({0});
  return none;
}

modulation fine_noise(int amplitude, int strength) {
  const matrix_set noise = shifted_blue_noise();
  modulation fine{.width = noise[0].width, .height = noise[0].height};
  const int top = int(noise[0].ranks.size()) - 1;
  for (std::size_t p = 0; p < noise.size(); ++p) {
    for (const int rank : noise[p].ranks) {
      const int amount = (2 * rank - top) * amplitude * strength / top;
      fine.planes[p].push_back(std::int8_t(std::clamp(amount, -amplitude, amplitude)));
    }
  }
  return fine;
}

modulation fine_noise_for(unsigned levels) { return fine_noise(127 / (int(levels) - 1)); }
modulation strong_noise_for(unsigned levels) { return fine_noise(127 / (int(levels) - 1), 4); }

}  // namespace vrk::kit
