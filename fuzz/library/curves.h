// Curve images out of a section of an input.
#pragma once

#include <algorithm>

#include "fuzz/memory.h"

namespace vrk::fuzz {

// The header is that of the section, the entries repeat the rest of it. As many as it announces, where the library may
// take it; of all others the header alone, behind which nothing may be read.
inline bytes curve_image_of(byte_span section, bool main_table = false) {
  bytes image(12);
  std::copy_n(section.begin(), std::min<std::size_t>(12, section.size()), image.begin());
  const unsigned entries = unsigned(image[10] << 8 | image[11]);
  unsigned curves = image[8];
  const bool counts_planes = main_table && !(image[4] == '0' && image[5] == '0' && image[6] == '1' && image[7] == '0');
  if (counts_planes) curves = std::max<unsigned>(curves, image[9]);
  if (entries != 1024 || curves > 6) return image;
  const byte_span body = section.size() > 12 ? section.subspan(12) : byte_span{};
  image.resize(12 + 2048 * curves);
  for (std::size_t i = 12, from = 0; !body.empty() && i < image.size(); ++i) {
    image[i] = body[from];
    from = from + 1 == body.size() ? 0 : from + 1;
  }
  return image;
}

// Samples of a pixel before and after post-processing. Transforms refuse other counts than 1, 4 and 6, and then follow
// no pointer.
struct postproc_samples {
  postproc_samples(bool main_on, const std::uint8_t* main_table, std::uint32_t planes) : in(planes), out(planes) {
    if (!main_on || std::memcmp(main_table + 4, "0010", 4) == 0) return;
    in = main_table[8], out = main_table[9] != 0 ? main_table[9] : in;
  }
  std::uint32_t in, out;
};

}  // namespace vrk::fuzz
