// The dither table "dith".
#pragma once

#include <array>
#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

// One ink plane. It is present when it has levels.
struct dither_plane {
  unsigned width = 1, height = 1;             // of the matrix, 1 ... 255 each
  std::optional<unsigned> level_count{};      // unless set, the number of `level_values`
  unsigned bits = 1;                          // per output pixel: 1, 2, 4 or 8
  std::vector<std::uint16_t> level_values{};  // input value at which each level begins; last one 255 or, 16-bit, 1023
  std::vector<std::uint16_t> matrix{};        // width * height, row by row; ranks spread the thresholds evenly
};

struct dither_table {
  std::string magic = "dith";
  std::string version = "0010";
  std::array<dither_plane, 6> planes{};  // table order C, M, Y, K, fifth, sixth; see kit/planes.h

  bytes encode() const;
};

}  // namespace vrk::kit
