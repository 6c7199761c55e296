// Files that go to standard output.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vrk::tool {

// Throws user_error when standard output is one of these files that the run reads ("-": standard input).
void refuse_as_standard_output(const std::vector<std::string>& inputs);

// first: byte of the file to begin with. Throws user_error when standard output does not take all of it.
void copy_to_standard_output(const std::filesystem::path& file, unsigned first = 0);

}  // namespace vrk::tool
