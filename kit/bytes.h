// The byte string that every encoder of the kit returns, and how fields are appended to it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace vrk::kit {

using bytes = std::vector<std::uint8_t>;

inline void put8(bytes& out, unsigned v) { out.push_back(std::uint8_t(v)); }

inline void put_be16(bytes& out, unsigned v) {
  put8(out, v >> 8);
  put8(out, v);
}

inline void put_be32(bytes& out, std::uint32_t v) {
  put_be16(out, v >> 16);
  put_be16(out, v);
}

// The characters unchanged: a magic, a version, a directory tag.
inline void put_text(bytes& out, std::string_view text) {
  for (const char c : text) put8(out, std::uint8_t(c));
}

}  // namespace vrk::kit
