// How much a command says about what it has done.
#pragma once

#include <CLI/CLI.hpp>

namespace vrk::tool {

enum class summary { brief, verbose, quiet, json };

// Adds --verbose, --quiet and --json, of which one may be given. to: lives as long as the command
void add_summary_options(CLI::App& command, summary& to);

}  // namespace vrk::tool
