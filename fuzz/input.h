// What the bytes of one fuzzed input mean to the targets of the library: sections, each behind its length of 16 bits
// (big-endian). The first holds numbers that choose arguments and calls, the others are tables and pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

namespace vrk::fuzz {

using bytes = std::vector<std::uint8_t>;
using byte_span = std::span<const std::uint8_t>;

// Ends the program where `holds` is false.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Not so: %s\n", what);
  std::abort();
}

class input {
 public:
  input(const std::uint8_t* data, std::size_t size) : rest_(data, size) { numbers_ = section(); }

  // The next section; empty behind the last one. One that is cut off holds what is there.
  byte_span section() {
    if (rest_.size() < 2) return {};
    const std::size_t announced = std::size_t(rest_[0] << 8 | rest_[1]);
    const std::size_t length = announced < rest_.size() - 2 ? announced : rest_.size() - 2;
    const byte_span found = rest_.subspan(2, length);
    rest_ = rest_.subspan(2 + length);
    return found;
  }

  // The next numbers of the first section; 0 behind its end.
  std::uint8_t u8() {
    if (numbers_.empty()) return 0;
    const std::uint8_t value = numbers_[0];
    numbers_ = numbers_.subspan(1);
    return value;
  }
  std::uint16_t u16() { return std::uint16_t(u8() | u8() << 8); }
  std::uint32_t u32() { return u16() | std::uint32_t{u16()} << 16; }
  bool more() const { return !numbers_.empty(); }

 private:
  byte_span rest_, numbers_;
};

inline void append_section(bytes& to, byte_span section) {
  to.push_back(std::uint8_t(section.size() >> 8)), to.push_back(std::uint8_t(section.size()));
  to.insert(to.end(), section.begin(), section.end());
}

// An input of these sections.
inline bytes joined(std::initializer_list<byte_span> sections) {
  bytes all;
  for (const byte_span section : sections) append_section(all, section);
  return all;
}

}  // namespace vrk::fuzz
