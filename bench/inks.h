// Ink planes of a picture, for the stages after conversion.
#pragma once

#include <algorithm>

#include "bench/pictures.h"

namespace vrk::bench {

// `channels` samples a pixel, K, C, M, Y, fifth, sixth: complements of R, G, B with half of the gray moved to K.
inline std::vector<std::uint16_t> ink_samples(const picture& p, unsigned channels) {
  std::vector<std::uint16_t> inks;
  inks.reserve(std::size_t(p.pixels()) * channels);
  for (std::size_t i = 0; i < 3 * std::size_t(p.pixels()); i += 3) {
    const std::uint16_t* const rgb = &p.rgb16[i];
    const unsigned k = (65535u - std::max({rgb[0], rgb[1], rgb[2]})) / 2;
    const unsigned c = 65535u - rgb[0] - k, m = 65535u - rgb[1] - k, y = 65535u - rgb[2] - k;
    const unsigned all[6] = {k, c, m, y, 65535u - c, 65535u - m};
    for (unsigned p = 0; p < channels; ++p) inks.push_back(std::uint16_t(all[p]));
  }
  return inks;
}

// The same as the bytes that a stage takes for samples of 8 or 16 bits.
inline std::vector<std::uint8_t> ink_bytes(const picture& p, unsigned channels, unsigned bits) {
  const std::vector<std::uint16_t> inks = ink_samples(p, channels);
  const auto* const words = reinterpret_cast<const std::uint8_t*>(inks.data());
  if (bits == 16) return {words, words + 2 * inks.size()};
  std::vector<std::uint8_t> bytes;
  bytes.reserve(inks.size());
  for (const unsigned v : inks) bytes.push_back(std::uint8_t(v >> 8));
  return bytes;
}

}  // namespace vrk::bench
