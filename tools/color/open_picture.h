// Pictures with the colours that their files or the command line give them.
#pragma once

#include "tools/image/image_argument.h"

namespace vrk::tool {

// Gray and R, G, B come as sRGB. So do C, M, Y, K with a profile, unless `keeps_inks`: then the picture still has it.
// Without a profile they are the printer's own inks. A profile in the file that is damaged or is not for such pixels
// gives a warning on standard error, and counts as none. Throws user_error when the one of the command line is.
std::unique_ptr<image_reader> open_picture(const image_argument& argument, bool keeps_inks = false);

// The same of a picture that has been opened, whatever the argument's path.
std::unique_ptr<image_reader> give_colors(std::unique_ptr<image_reader> stored, const image_argument& argument,
                                          bool keeps_inks);

}  // namespace vrk::tool
