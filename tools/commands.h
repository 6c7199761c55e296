// The subcommands of `vrk`. Each function adds one to the command line; main reports what a subcommand throws.
#pragma once

#include <CLI/CLI.hpp>

namespace vrk::tool {

inline constexpr const char* exit_help =
    "Exit codes: 0, all is done; 1, it could not be done, and the files are as they were before, but for whole pages "
    "of a stream; 2, the command line is wrong.";

void add_print_command(CLI::App& app);      // print: a picture through all stages
void add_demo_command(CLI::App& app);       // demo: the built-in sample page
void add_tables_command(CLI::App& app);     // tables: the kit's tables as files
void add_inspect_command(CLI::App& app);    // inspect: what tables hold, or why they are refused
void add_link_command(CLI::App& app);       // link: a colour table from ICC profiles
void add_chart_command(CLI::App& app);      // chart: a step chart of the inks
void add_calibrate_command(CLI::App& app);  // calibrate: plane curves from a measured step chart
void add_compare_command(CLI::App& app);    // compare: every filter and matrix side by side
void add_report_command(CLI::App& app);     // report: tone and spectrum of every filter and matrix

}  // namespace vrk::tool
