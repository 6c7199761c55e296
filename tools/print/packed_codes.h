// Rows of dots as the halftone packs them, the first dot in the most significant bits. bits: per dot, 1, 2, 4 or 8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vrk::tool {

// Fills `codes` with one for every dot.
void unpack_codes(const std::uint8_t* packed, unsigned bits, std::span<std::uint8_t> codes);

// How often each code comes.
class code_counts {
 public:
  code_counts(unsigned bits, std::size_t dots) : bits_(bits), dots_(dots) {}

  void add_row(const std::uint8_t* packed);
  std::uint64_t of(unsigned code) const;

 private:
  unsigned bits_;
  std::size_t dots_;
  std::array<std::uint64_t, 256> codes_{};  // of one bit, and of bytes that are not full
  // Whole bytes, by turns in one of these: adding to the same number twice in a row would have to wait.
  std::array<std::array<std::uint64_t, 256>, 4> bytes_{};
};

// The codes times a weight, as digits of numbers.
class weighted_codes {
 public:
  using number = std::uint16_t;
  static constexpr std::size_t most_dots = 8;  // of a byte

  weighted_codes(unsigned bits, unsigned weight);

  unsigned bits() const { return bits_; }

  // Adds up the codes of a row for each of the digits, which have the same bits. Whole bytes are read: `to` has room
  // for most_dots - 1 numbers more.
  static void add(std::span<const weighted_codes> digits, const std::uint8_t* const* packed, std::size_t dots,
                  number* to);

 private:
  unsigned bits_;
  std::vector<number> of_bytes_;
};

}  // namespace vrk::tool
