// Profiles of colour spaces that are told by their numbers.
#pragma once

#include <string>

#include "kit/bytes.h"

namespace vrk::profiles {

struct chromaticity {
  double x, y;  // CIE 1931
};
struct primaries {
  chromaticity white, red, green, blue;
};
inline constexpr primaries srgb_primaries{{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};

// The bytes of an ICC profile; none where Little CMS makes no profile of the numbers.
// channels: 1 for gray, which has the white alone, or 3. gamma: light is this power of the level. name: its
// description.
kit::bytes plain_profile(unsigned channels, const std::string& name, double gamma, const primaries& colors);

kit::bytes srgb_profile(unsigned channels);
kit::bytes adobe_rgb_profile();  // Adobe RGB (1998), of most cameras that do not write sRGB

}  // namespace vrk::profiles
