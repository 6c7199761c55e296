// Files that go to standard output.
#pragma once

#include <filesystem>

namespace vrk::tool {

// first: byte of the file to begin with. Throws user_error when standard output does not take all of it.
void copy_to_standard_output(const std::filesystem::path& file, unsigned first = 0);

}  // namespace vrk::tool
