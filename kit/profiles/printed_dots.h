// Dots of ink on paper as a profile shows them: one by one, and the mean of many.
#pragma once

#include <functional>
#include <span>

#include "kit/profiles/printed_color.h"

namespace vrk::profiles {

// H. E. J. Neugebauer's mean (1937) over the colours that the profile's forward table gives to full inks on each other.
// Dots look larger than they are, since light that enters the paper beside them leaves it under them. Therefore it is
// not light that adds up but its n-th root (J. A. C. Yule and W. J. Nielsen, 1951). There is an n for each of red,
// green and blue, those that come closest to the rest of the forward table. The three are wide primaries, in which no
// print has negative light: those of ROMM RGB (ISO 22028-2).
class printed_dots {
 public:
  using roots = std::array<float, 3>;  // of red, green and blue; 1 is paper white

  // What post-processing makes of pixels of the profile's inks: samples of every plane of the print, in plane order.
  using dots_of_inks = std::function<samples(const samples& inks)>;

  // planes: of the print, 1 to 6. Where the profile has no light inks, they hold a third of the full ink's pigment, as
  // in the kit's ink model. printed_as: empty where every ink becomes dots of that share.
  printed_dots(const printed_color& shown, unsigned planes, const dots_of_inks& printed_as = {});

  // Dots of these shares of full ink, one a plane, as they count in a mean.
  roots of(std::span<const double> shares) const;

  // A mean as linear light of the sRGB primaries, below 0 or above 1 for colours that sRGB does not have.
  std::array<float, 3> light_of(const roots& mean) const;

 private:
  std::array<float, 3> n_{};
  std::array<std::array<float, 64>, 3> overprints_{};  // bit p of an index: plane p in full
};

}  // namespace vrk::profiles
