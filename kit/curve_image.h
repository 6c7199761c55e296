// The curve image "1dlt": tone curves for pre-processing, the second converter and post-processing.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

// Entry i is the output level on a 16-bit scale for the input level i on a 10-bit scale.
using curve = std::array<std::uint16_t, 1024>;

struct curve_image {
  std::string magic = "1dlt";
  std::string version = "0010";  // "0010" or "002x": one of the two count modes of a post-processing main table
  std::optional<unsigned> curve_count{};  // unless set, the number of `curves`
  unsigned output_count = 0;              // post-processing main table: planes that come out
  unsigned entries = 1024;                // per curve, as the header announces
  std::vector<curve> curves{};

  bytes encode() const;
};

}  // namespace vrk::kit
