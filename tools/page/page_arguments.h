// The page on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/page/placement.h"

namespace vrk::tool {

inline constexpr const char* paper_group = "Size on paper";  // what these options are listed under

// to: lives as long as the command
void add_page_options(CLI::App& command, page_options& to);

// --dpi and --size alone. usual_size: the default, in words.
void add_paper_options(CLI::App& command, page_options& to, const std::string& usual_size);

}  // namespace vrk::tool
