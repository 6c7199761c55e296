// The flags of a stage in words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vrk::tool {

// flags: as the library keeps them. precision: what bit 0x10 means for this stage, the one bit that differs.
std::vector<std::string> flag_words(std::uint32_t flags, const char* precision);

}  // namespace vrk::tool
