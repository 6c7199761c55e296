#include "tools/print/bit_rows.h"

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
  const auto mixed = [&rows](std::size_t byte, unsigned used) {
    std::uint64_t pixels = 0;
    for (const std::uint8_t* const row : rows) pixels = pixels << 1 | spread_dots<pixel_bits>[row[byte] & used];
    return pixels;
  };
  std::size_t byte = 0;
  for (; byte < width / 8; ++byte, to += pixel_bits) {
    const std::uint64_t pixels = mixed(byte, 0xFF);
    for (unsigned i = 0; i < pixel_bits; ++i) to[i] = std::uint8_t(pixels >> 8 * (pixel_bits - 1 - i));
  }
  if (const std::size_t dots = width % 8; dots != 0) {  // behind the last dot a row may have anything
    const std::uint64_t pixels = mixed(byte, 0xFFU << (8 - dots));
    for (unsigned i = 0; i < (dots * pixel_bits + 7) / 8; ++i) {
      to[i] = std::uint8_t(pixels >> 8 * (pixel_bits - 1 - i));
    }
  }
}

}  // namespace

void mix_bits(const std::vector<const std::uint8_t*>& rows, std::size_t width, unsigned pixel_bits, std::uint8_t* to) {
  pixel_bits == 1 ? mix<1>(rows, width, to) : pixel_bits == 4 ? mix<4>(rows, width, to) : mix<8>(rows, width, to);
}

}  // namespace vrk::tool
