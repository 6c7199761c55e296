// Files that go to standard output.
#pragma once

#include <filesystem>

namespace vrk::tool {

// Throws user_error when standard output does not take all of it.
void copy_to_standard_output(const std::filesystem::path& file);

}  // namespace vrk::tool
