// Completion of command lines by shells.
#pragma once

#include <CLI/CLI.hpp>

namespace vrk::tool {

// Adds `vrk completion bash|zsh|fish`, which --help does not show: it writes a script for the shell, made of what the
// commands of the program say about their options.
void add_completion_command(CLI::App& app);

}  // namespace vrk::tool
