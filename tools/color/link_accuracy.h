// How close a colour table comes to the profiles that it was made from.
#pragma once

#include "kit/profiles/color_link.h"
#include "kit/profiles/printed_color.h"
#include "tools/pipeline/table.h"

namespace vrk::tool {

struct link_accuracy {
  double mean, percentile99, largest;  // CIEDE2000
  double largest_total;                // ink in percent; of RGB without meaning
  // Steps of the table along the gray axis, one from each 8-bit level to the next in each channel, that go up where the
  // link goes down or down where it goes up, by half a step of the working precision or more.
  unsigned gray_reversals;
};

// The table, run through the library, beside the link itself: 8-bit gray levels and random colours, 100000 together and
// always the same. Both results are judged as the device shows them. precision: 8 or 12 bits, the library's.
link_accuracy measure_link(const table& image, unsigned precision, const profiles::color_link& link,
                           const profiles::printed_color& shown);

}  // namespace vrk::tool
