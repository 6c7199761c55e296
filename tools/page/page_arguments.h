// The page on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/page/placement.h"

namespace vrk::tool {

// to: lives as long as the command
void add_page_options(CLI::App& command, page_options& to);

}  // namespace vrk::tool
