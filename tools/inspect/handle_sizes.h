// The handles that a table serves, and the memory that each needs.
#pragma once

#include <string>
#include <vector>

#include "tools/pipeline/table.h"

namespace vrk::tool {

struct handle_size {
  std::string use, precision;
  kit::refusal refused{};    // why there is no such handle; else
  std::uint32_t bytes = 0;   // without those of
  unsigned pixel_bytes = 0;  // each pixel of the line width that the handle is for
};

// Asks the library, by building every handle. Empty for what is no table of a stage.
std::vector<handle_size> handle_sizes(const table& image);

}  // namespace vrk::tool
