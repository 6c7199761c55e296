// What samples look like on the device: a profile's forward table.
#pragma once

#include <array>

#include "kit/profiles/color_link.h"

namespace vrk::profiles {

using lab = std::array<double, 3>;  // CIE L*, a*, b* under D50, relative to the paper

// Several threads may use one at once.
class printed_color {
 public:
  // order: as of the link that the samples come from. Throws profile_error when the profile has no forward table.
  explicit printed_color(const profile& device, const ink_order& order = usual_ink_order);

  unsigned channels() const { return channels_; }  // of the device

  // of: R, G, B pixels, or inks in plane order.
  std::vector<lab> of(const samples& pixels) const;

 private:
  std::shared_ptr<void> transform_;
  unsigned channels_;
  ink_order order_;
};

// CIE 142-2001.
double delta_e2000(const lab& a, const lab& b);

}  // namespace vrk::profiles
