// The pictures that the benchmarks convert and print.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vrk::bench {

// An RGB picture in both sample widths; stages are called line by line, as a driver does.
struct picture {
  std::string name;
  unsigned width, height;
  std::vector<std::uint8_t> rgb8;
  std::vector<std::uint16_t> rgb16;  // the same, with random low bits

  unsigned pixels() const { return width * height; }
};

inline constexpr unsigned picture_width = 2400, picture_lines = 160;

// Of picture_width * lines 8-bit pixels.
picture picture_of(std::string name, std::vector<std::uint8_t> rgb8);

const picture& photographic();     // smooth areas, texture and grain
const picture& uniform_random();   // pixels anywhere in the colour cube
const picture& page_with_paper();  // the sample page: photograph, ramps, type, and bare paper between them

}  // namespace vrk::bench
