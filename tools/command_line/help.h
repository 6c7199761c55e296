// The text of --help.
#pragma once

#include <CLI/CLI.hpp>

#include <initializer_list>
#include <string>

namespace vrk::tool {

// For terminals of 80 columns. Lines that begin with blanks stay as they are.
class help_format : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* app) const override;
  std::string make_option(const CLI::Option* option, bool is_positional) const override;
  std::string make_subcommand(const CLI::App* command) const override;
  std::string make_footer(const CLI::App* app) const override;
};

// The text below the options: examples of command lines, then paragraphs, the exit codes among them.
std::string help_footer(std::initializer_list<std::string> examples,
                        std::initializer_list<std::string> paragraphs = {});

}  // namespace vrk::tool
