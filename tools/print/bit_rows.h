// Rows of dots of one bit, as the halftone packs them: the first dot in the most significant bit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vrk::tool {

// Whether mix_bits knows pixels of so many bits.
constexpr bool mixes_bits(unsigned pixel_bits) { return pixel_bits == 1 || pixel_bits == 4 || pixel_bits == 8; }

// One line of pixels, in each of which the dots of all rows lie side by side in its last bits, the first row's first.
// to: takes (width * pixel_bits + 7) / 8 bytes.
void mix_bits(const std::vector<const std::uint8_t*>& rows, std::size_t width, unsigned pixel_bits, std::uint8_t* to);

}  // namespace vrk::tool
