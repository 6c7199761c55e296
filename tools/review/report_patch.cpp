#include "tools/review/report_patch.h"

#include "tools/print/dots.h"

namespace vrk::tool {

ink_plane flat_patch(halftone& by, unsigned width, unsigned height, unsigned tone, unsigned bits) {
  const std::vector<std::uint8_t> bytes(width, std::uint8_t(tone));
  const std::vector<std::uint16_t> words(width, std::uint16_t(tone * 257));
  return dots_of_lines(by, width, height, bits == 16 ? static_cast<const void*>(words.data()) : bytes.data());
}

ink_plane dots_of_lines(halftone& by, unsigned width, unsigned height, const void* line) {
  dots row(by.planes(), width);
  std::vector<std::uint8_t> packed(by.output_bytes());
  ink_plane patch{width, height, {}};
  patch.ink.reserve(std::size_t{width} * height);
  for (unsigned y = 0; y < height; ++y) {
    by.run(line, packed.data());
    row.read_row(packed.data(), 0);
    for (const std::uint8_t code : row.codes(0)) patch.ink.push_back(float(by.planes()[0].ink[code]));
  }
  return patch;
}

}  // namespace vrk::tool
