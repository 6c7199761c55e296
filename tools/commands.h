// The subcommands of `vrk`. Each adds itself to the command line; what it throws, main says.
#pragma once

#include <CLI/CLI.hpp>

namespace vrk::tool {

void add_print_command(CLI::App& app);    // print: a picture through the whole road
void add_demo_command(CLI::App& app);     // demo: the embedded test page
void add_tables_command(CLI::App& app);   // tables: the kit's tables as files
void add_compare_command(CLI::App& app);  // compare: every filter and matrix side by side
void add_report_command(CLI::App& app);   // report: tone and spectrum of every filter and matrix

}  // namespace vrk::tool
