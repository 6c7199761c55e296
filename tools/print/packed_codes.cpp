#include "tools/print/packed_codes.h"

#include <cstring>

namespace vrk::tool {
namespace {

// The codes in every byte of packed ones.
template <unsigned bits>
constexpr auto codes_of_bytes = [] {
  constexpr unsigned per_byte = 8 / bits, mask = (1u << bits) - 1;
  std::array<std::array<std::uint8_t, per_byte>, 256> all{};
  for (unsigned byte = 0; byte < all.size(); ++byte) {
    for (unsigned x = 0; x < per_byte; ++x) all[byte][x] = std::uint8_t(byte >> (per_byte - 1 - x) * bits & mask);
  }
  return all;
}();

template <class Run>
decltype(auto) with_bits(unsigned bits, const Run& run) {
  switch (bits) {
    case 1:
      return run.template operator()<1>();
    case 2:
      return run.template operator()<2>();
    case 4:
      return run.template operator()<4>();
    default:
      return run.template operator()<8>();
  }
}

// std::popcount calls a function where the processor need not have an instruction for it.
std::uint64_t ones_of(std::uint64_t word) {
  constexpr std::uint64_t ones = ~std::uint64_t{} / 255;  // in every byte
  word -= word >> 1 & 0x55 * ones;
  word = (word & 0x33 * ones) + (word >> 2 & 0x33 * ones);
  return ((word + (word >> 4)) & 0x0F * ones) * ones >> 56;
}

std::uint64_t count_ones(const std::uint8_t* bytes, std::size_t count) {
  std::uint64_t ones = 0, word = 0;
  for (; count >= sizeof word; count -= sizeof word, bytes += sizeof word) {
    std::memcpy(&word, bytes, sizeof word);
    ones += ones_of(word);
  }
  word = 0;
  std::memcpy(&word, bytes, count);
  return ones + ones_of(word);
}

}  // namespace

void unpack_codes(const std::uint8_t* packed, unsigned bits, std::span<std::uint8_t> codes) {
  with_bits(bits, [&]<unsigned width> {
    constexpr std::size_t per_byte = 8 / width;
    std::uint8_t* to = codes.data();
    std::size_t left = codes.size();
    for (; left >= per_byte; left -= per_byte, to += per_byte) {
      std::memcpy(to, codes_of_bytes<width>[*packed++].data(), per_byte);
    }
    if (left != 0) std::memcpy(to, codes_of_bytes<width>[*packed].data(), left);
  });
}

void code_counts::add_row(const std::uint8_t* packed) {
  const std::size_t full = dots_ * bits_ / 8, rest = dots_ - full * (8 / bits_);
  if (bits_ == 1) {
    const std::uint64_t ones = count_ones(packed, full);
    codes_[0] += 8 * full - ones;
    codes_[1] += ones;
  } else {
    for (std::size_t i = 0; i < full; ++i) ++bytes_[i % bytes_.size()][packed[i]];
  }
  std::array<std::uint8_t, 8> codes{};
  unpack_codes(packed + full, bits_, std::span(codes).first(rest));
  for (std::size_t x = 0; x < rest; ++x) ++codes_[codes[x]];
}

std::uint64_t code_counts::of(unsigned code) const {
  std::uint64_t count = codes_[code];
  with_bits(bits_, [&]<unsigned width> {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      std::uint64_t times = 0;
      for (const auto& seen : bytes_) times += seen[byte];
      for (const unsigned found : codes_of_bytes<width>[byte]) count += found == code ? times : 0;
    }
  });
  return count;
}

weighted_codes::weighted_codes(unsigned bits, unsigned weight) : bits_(bits) {
  with_bits(bits, [&]<unsigned width> {
    for (const auto& codes : codes_of_bytes<width>) {
      for (const std::uint8_t code : codes) of_bytes_.push_back(number(code * weight));
    }
  });
}

void weighted_codes::add(std::span<const weighted_codes> digits, const std::uint8_t* const* packed, std::size_t dots,
                         number* to) {
  with_bits(digits[0].bits_, [&]<unsigned width> {
    constexpr std::size_t per_byte = 8 / width;
    for (std::size_t byte = 0; byte * per_byte < dots; ++byte, to += per_byte) {
      std::array<number, per_byte> sums, more;  // apart from what `to` may overlap: a vector, where it has this size
      std::memcpy(sums.data(), to, sizeof sums);
      for (std::size_t i = 0; i < digits.size(); ++i) {
        std::memcpy(more.data(), &digits[i].of_bytes_[packed[i][byte] * per_byte], sizeof more);
        for (std::size_t x = 0; x < per_byte; ++x) sums[x] = number(sums[x] + more[x]);
      }
      std::memcpy(to, sums.data(), sizeof sums);
    }
  });
}

}  // namespace vrk::tool
