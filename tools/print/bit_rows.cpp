#include "tools/print/bit_rows.h"

#include <algorithm>
#include <array>

namespace vrk::tool {
namespace {

// Eight dots, each in the last bit of a pixel: the first pixel in the most significant bits of the 8 * pixel_bits used.
template <unsigned pixel_bits>
constexpr auto spread_dots = [] {
  std::array<std::uint64_t, 256> spread{};
  for (unsigned dots = 0; dots < spread.size(); ++dots) {
    for (unsigned x = 0; x < 8; ++x) {
      spread[dots] |= std::uint64_t{dots >> (7 - x) & 1} << (7 - x) * pixel_bits;
    }
  }
  return spread;
}();

template <unsigned pixel_bits>
void mix(const std::vector<const std::uint8_t*>& rows, std::size_t width, std::uint8_t* to) {
  for (std::size_t x = 0; x < width; x += 8) {
    const std::size_t dots = std::min<std::size_t>(width - x, 8);
    const auto used = std::uint8_t(0xFF << (8 - dots));  // behind the last dot a row may have anything
    std::uint64_t pixels = 0;
    for (const std::uint8_t* const row : rows) pixels = pixels << 1 | spread_dots<pixel_bits>[row[x / 8] & used];
    for (std::size_t left = (dots * pixel_bits + 7) / 8, shift = 8 * pixel_bits; left != 0; --left) {
      *to++ = std::uint8_t(pixels >> (shift -= 8));
    }
  }
}

}  // namespace

void mix_bits(const std::vector<const std::uint8_t*>& rows, std::size_t width, unsigned pixel_bits, std::uint8_t* to) {
  pixel_bits == 1 ? mix<1>(rows, width, to) : pixel_bits == 4 ? mix<4>(rows, width, to) : mix<8>(rows, width, to);
}

}  // namespace vrk::tool
