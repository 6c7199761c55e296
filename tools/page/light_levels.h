// Between samples of pictures and what adds up when samples are averaged.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/image/image_reader.h"

namespace vrk::tool {

// R, G, B and gray become linear light, inks stay the share of the paper that they cover; all are 0 ... 1.
class light_levels {
 public:
  explicit light_levels(const image_reader& picture);

  // One channel of `pixels` interleaved pixels.
  void read(const void* line, unsigned channel, unsigned pixels, float* light) const;
  void write(const float* light, unsigned channel, unsigned pixels, void* line) const;

 private:
  template <class Sample>
  void read_as(const Sample* samples, unsigned pixels, float* light) const;

  unsigned channels_, bits_;
  std::vector<float> light_;         // of every sample
  std::vector<float> samples_;       // of 65536 levels of light, not rounded; the last one twice
  std::vector<std::uint8_t> bytes_;  // the same, rounded, for samples of 8 bits
};

}  // namespace vrk::tool
