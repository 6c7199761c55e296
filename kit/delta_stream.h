// The differences in which the encodings `delta8` and `delta10` store the samples of a grid: plane after plane, each
// from a plain first sample on.
#pragma once

#include <optional>

#include "kit/color_table.h"

namespace vrk::kit {

// Appends the grid's samples of `bits` bits, 8 or 10, and ends with the byte that holds the last code. codes_unused:
// how many of the shortest four codes are left out, at most 3.
void put_delta_stream(bytes& out, const color_grid& grid, unsigned bits, unsigned codes_unused);

struct delta_fault {
  unsigned plane;               // in grid order
  unsigned point;               // whose sample it is, by its number in the grid
  std::uint64_t offset;         // of the byte in which the sample's code begins
  std::optional<int> sample{};  // outside the range of samples; none where the image ends first
};

// The first fault in the stream of points^3 points at offset `from` of an image, if there is one.
std::optional<delta_fault> first_delta_fault(const bytes& image, std::uint64_t from, unsigned planes, unsigned points,
                                             unsigned bits);

}  // namespace vrk::kit
