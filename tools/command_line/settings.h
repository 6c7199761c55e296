// The options of a command in a file, in CLI11's format: "levels=4", a line for each.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "tools/files/output_set.h"

namespace vrk::tool {

// Adds --settings. Comes before the other options of the command: what a file says counts where the command line says
// nothing, and is checked like that. Options that are not configurable belong to the command line alone.
void add_settings_option(CLI::App& command);

// And --save-settings (to).
void add_settings_options(CLI::App& command, std::string& to);

// What --settings does.
void load_settings(CLI::App& command, const std::string& path);

// The same with options that another source gives. Throws usage_error, with its name in front.
struct named_setting {
  std::string name;  // of an option of the command
  std::vector<std::string> values;
};
void add_settings(CLI::App& command, const std::vector<named_setting>& given, const std::string& source);

// The file that --settings names, if it does.
std::vector<std::string> settings_read(const CLI::App& command);

// The file that a run of the command is to leave; nothing without a path.
class saved_settings {
 public:
  // inputs: files that are not replaced, but for the settings that were read
  saved_settings(CLI::App& command, const std::string& path, const std::vector<std::string>& inputs);

  void protect(const std::string& file) { set_.protect(file); }
  void keep() { set_.keep(); }

 private:
  output_set set_;
};

}  // namespace vrk::tool
