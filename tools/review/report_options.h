// What `vrk report` is asked for.
#pragma once

#include <string>
#include <vector>

#include "tools/image/image_argument.h"
#include "tools/review/measure/eye.h"

namespace vrk::tool {

struct report_options {
  unsigned levels = 2;  // of a dot
  bool noise = true;    // modulation of the thresholds of error diffusion
  // Of the patches whose spectra are taken, 1 ... 254. A small matrix makes a clean pattern of some tones; of these,
  // 96 is one, and most are none.
  std::vector<unsigned> tones{13, 37, 75, 96, 128, 181, 218, 242};
  viewing view{};
  unsigned inks = 4;                     // of the photographs: 1, 4 or 6
  std::vector<image_argument> images{};  // none: the built-in one
  std::vector<std::string> against{};    // PBM files of other programs, see against.h
  std::vector<std::string> only{};       // filters and matrices; none: all
  bool patches = true;
};

}  // namespace vrk::tool
