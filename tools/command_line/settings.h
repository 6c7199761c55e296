// The options of a command in a file, in CLI11's format: "levels=4", a line for each.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "tools/files/output_set.h"

namespace vrk::tool {

// Adds --settings and --save-settings (to). Comes before the other options of the command: what a file says counts
// where the command line says nothing, and is checked like that. Options that are not configurable belong to the
// command line alone.
void add_settings_options(CLI::App& command, std::string& to);

// The file that a run of the command is to leave; nothing without a path.
class saved_settings {
 public:
  // input: a file that is not replaced
  saved_settings(CLI::App& command, const std::string& path, const std::string& input);

  void protect(const std::string& file) { set_.protect(file); }
  void keep() { set_.keep(); }

 private:
  output_set set_;
};

}  // namespace vrk::tool
