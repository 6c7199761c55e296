// How large a picture may be.
#pragma once

#include <cstdint>
#include <string>

namespace vrk::tool {

// Held against what the header of a file says, before memory is taken for it.
struct picture_limits {
  static constexpr std::uint64_t usual_memory = std::uint64_t{1} << 30;
  static constexpr unsigned usual_side = 1000000;

  constexpr picture_limits(std::uint64_t most_memory = usual_memory) : memory(most_memory) {}
  constexpr picture_limits(std::uint64_t most_memory, unsigned widest, unsigned highest)
      : memory(most_memory), width(widest), height(highest) {}

  bool admit(std::uint64_t across, std::uint64_t down) const {
    return across >= 1 && across <= width && down >= 1 && down <= height;
  }
  // The end of a sentence about others.
  std::string text() const {
    return "1 to " + std::to_string(width) + " across (--max-width) and 1 to " + std::to_string(height) +
           " down (--max-height)";
  }

  std::uint64_t memory;  // bytes, for a picture that cannot be read line by line
  unsigned width = usual_side, height = usual_side;
};

}  // namespace vrk::tool
