// Names on the command line.
#pragma once

#include <CLI/CLI.hpp>

namespace vrk::tool {

inline const CLI::Validator not_empty(
    [](const std::string& text) { return text.empty() ? "the name is empty" : std::string(); }, "");

}  // namespace vrk::tool
