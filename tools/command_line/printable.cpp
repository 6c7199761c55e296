#include "tools/command_line/printable.h"

#include <cstdio>

namespace vrk::tool {
namespace {

// Bytes of the character at the front of the text; 0 for a control character and for what is no UTF-8.
std::size_t character_bytes(std::string_view text) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const unsigned first = byte(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  unsigned code = first & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr unsigned first_codes[] = {0xA0, 0x800, 0x10000};  // of 2, 3 and 4 bytes; 0x80 to 0x9F are controls
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  return first >= 0xC0 && first < 0xF8 && code >= first_codes[bytes - 2] && code < 0x110000 && !surrogate ? bytes : 0;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t bytes = character_bytes(text);
    if (bytes != 0) {
      shown += text.substr(0, bytes);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned char>(text.front()));
      shown += escaped;
    }
    text.remove_prefix(bytes != 0 ? bytes : 1);
  }
  return shown;
}

}  // namespace vrk::tool
