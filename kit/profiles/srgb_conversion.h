// Pictures in the colours of a profile, brought to sRGB.
#pragma once

#include "kit/profiles/profile.h"

namespace vrk::profiles {

// White becomes white and black becomes black. Several threads may use one at once.
class srgb_conversion {
 public:
  // from: of gray, RGB or CMYK. bits: of the samples on both sides, 8 or 16 in the machine's byte order. Throws
  // profile_error where the profile has no table from its device to colours.
  srgb_conversion(const profile& from, unsigned bits);

  void convert(const void* pixels, unsigned count, void* srgb) const;  // gray stays gray; what else becomes R, G, B

 private:
  std::shared_ptr<void> transform_;
};

// Whether the conversion would change no level of 8 bits by more than one.
bool is_srgb(const profile& picture);

}  // namespace vrk::profiles
