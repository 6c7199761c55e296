// Faults of flat tints: bare rims, and tones that do not look like their neighbours.
#pragma once

#include <span>

#include "tools/review/measure/ink_plane.h"

namespace vrk::tool {

// Ink in the outer parts of a tint that fills the plane, relative to its tone: 1 is as much as asked for.
struct rim {
  double lines = 1;    // the first 12
  double columns = 1;  // the outer 12 on the left and on the right, whichever of them is further from 1
};
rim measure_rim(const ink_plane& dots, double tone);

// The tone around a quarter, a half and three quarters of full ink that differs most from its neighbours.
struct seam {
  unsigned tone = 0;  // 0 ... 255
  double step = 0;    // value less that of the neighbours on both sides of it
  double ratio = 1;   // value in relation to that of the neighbours
};
inline constexpr unsigned seam_reach = 12;  // tones on both sides of each of them that are needed

// values: a measure of flat patches by tone (0 ... 255), such as their noise or error of tone. Of those around each
// place, at most 3 tones away, the one with the largest step, beside the median of the tones 6 to 12 away.
seam measure_seam(std::span<const double> values);

// The tones that measure_seam reads.
std::vector<unsigned> seam_tones();

}  // namespace vrk::tool
