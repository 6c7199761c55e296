// One plane of a print: its dots, or the continuous ink that they stand for.
#pragma once

#include <numeric>
#include <vector>

namespace vrk::tool {

// Row by row, each as a share of full ink (0 ... 1). Also the difference of two planes.
struct ink_plane {
  unsigned width = 0, height = 0;
  std::vector<float> ink{};

  double mean() const { return std::accumulate(ink.begin(), ink.end(), 0.0) / double(ink.size()); }
  const float* row(unsigned y) const { return &ink[std::size_t{y} * width]; }
};

}  // namespace vrk::tool
