// What a print takes from the command line, or from a job of a print queue: one definition of every option.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/print/print_options.h"

namespace vrk::tool {

inline constexpr const char* picture_group = "Pictures of the print";  // what these options are listed under

// All but --detail. to: lives as long as the command
void add_print_options(CLI::App& command, print_options& to);

// --detail, for pages whose size is known to who prints them. After the others.
void add_detail_option(CLI::App& command, picture_options& to);

}  // namespace vrk::tool
