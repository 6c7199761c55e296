// Samples as numbers, and as the interface takes them: bytes, or 16-bit words in the machine's byte order.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace vrk::test {

using samples = std::vector<std::uint16_t>;
// Of packed planes, as the array forms take them: all of K, then of C ...
using lines = std::vector<std::vector<std::uint8_t>>;

inline std::vector<std::uint8_t> packed(const samples& values, bool words) {
  if (!words) return {values.begin(), values.end()};
  std::vector<std::uint8_t> bytes(2 * values.size());
  if (!bytes.empty()) std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

inline samples unpacked(std::span<const std::uint8_t> bytes, bool words) {
  if (!words) return {bytes.begin(), bytes.end()};
  samples values(bytes.size() / 2);
  if (!values.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
  return values;
}

}  // namespace vrk::test
