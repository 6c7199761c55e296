// Dots on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/print/print_options.h"

namespace vrk::tool {

// to: lives as long as the command
void add_dot_options(CLI::App& command, dot_options& to);

}  // namespace vrk::tool
