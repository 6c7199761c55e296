// Colour tables from ICC profiles.
#pragma once

#include "kit/color_table.h"
#include "kit/profiles/color_link.h"

namespace vrk::profiles {

struct table_form {
  unsigned points = 17;  // per axis, 2 ... 255
  kit::grid_encoding encoding = kit::grid_encoding::packed12;
  unsigned precision = 12;  // the working precision of the handles that it is made for: 8 or 12 bits
};

// "csc1" or "csc2", by the link's channels. Samples are rounded to what the handles keep of them, and raised by half a
// step against the truncation of the interpolation; none stays none, and the ink limit holds at every grid point.
// Throws profile_error for an encoding that the kind of table does not have.
kit::color_table link_table(const color_link& link, const table_form& form);

}  // namespace vrk::profiles
