#include "tools/command_line/settings.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "tools/command_line/not_empty.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

constexpr const char* group = "Settings";

struct setting {
  CLI::Option* option;
  std::vector<std::string> values;
};

std::string read_text(const std::string& path) {
  constexpr std::size_t longest = 1 << 20;
  std::ifstream file(path, std::ios::binary);
  std::string text(longest + 1, '\0');
  if (file) file.read(text.data(), std::streamsize(text.size()));
  if (file.bad() || !file.is_open()) throw user_error(path + ": " + std::strerror(errno));
  text.resize(std::size_t(file.gcount()));
  if (text.size() > longest) throw user_error(path + ": is longer than settings are, expected at most 1 MB");
  return text;
}

// Options that the text names, each with all values that it gives to them.
std::vector<setting> find_settings(CLI::App& command, const std::string& text, const std::string& path) {
  std::istringstream lines(text);
  std::vector<setting> found;
  for (const CLI::ConfigItem& item : command.get_config_formatter()->from_config(lines)) {
    const bool own = item.parents.empty() || item.parents == std::vector{command.get_name()};
    if (own && (item.name == "++" || item.name == "--")) continue;  // a section begins or ends
    CLI::Option* const option = own ? command.get_option_no_throw("--" + item.name) : nullptr;
    if (option == nullptr) {
      throw usage_error(path + ": \"" + (item.name == "++" ? item.parents.back() : item.fullname()) +
                        "\" is no setting of vrk " + command.get_name() + ", expected its long options without --");
    }
    if (!option->get_configurable()) {
      throw usage_error(path + ": \"" + item.name + "\" belongs on the command line");
    }
    auto known = std::find_if(found.begin(), found.end(), [&](const setting& s) { return s.option == option; });
    if (known == found.end()) known = found.insert(found.end(), {option, {}});
    known->values.insert(known->values.end(), item.inputs.begin(), item.inputs.end());
  }
  return found;
}

// Where the command has nothing of that option yet.
void set(std::vector<setting> given, const std::string& source) {
  for (auto& [option, values] : given) {
    if (option->count() != 0) continue;
    try {
      const bool flag = option->get_expected_min() == 0;
      if (flag && values.size() == 1) values[0] = option->get_flag_value(option->get_single_name(), values[0]);
      if (flag && values == std::vector<std::string>{"false"}) continue;  // as if it were not there
      option->add_result(values);
      option->run_callback();
    } catch (const CLI::ParseError& error) {
      throw usage_error(source + ": " + error.what());
    }
  }
}

// What was given, as text that says the same when it is read.
std::string settings_of(CLI::App& command, const std::string& path) {
  const std::string text = command.config_to_str();
  for (const auto& [option, values] : find_settings(command, text, path)) {
    const std::vector<std::string> given = option->reduced_results();
    if (values == given) continue;
    throw user_error(path + ": cannot hold " + option->get_name() + " " + CLI::detail::join(given, " ") +
                     ", expected no # and no quotes in it");
  }
  return text;
}

}  // namespace

void load_settings(CLI::App& command, const std::string& path) {
  set(find_settings(command, read_text(path), path), path);
}

void add_settings(CLI::App& command, const std::vector<named_setting>& given, const std::string& source) {
  std::vector<setting> found;
  for (const auto& [name, values] : given) found.push_back({command.get_option("--" + name), values});
  set(std::move(found), source);
}

void add_settings_option(CLI::App& command) {
  command
      .add_option_function<std::string>(
          "--settings", [&command](const std::string& path) { load_settings(command, path); },
          "options from a file, a line for each, such as levels=4; those of the command line come first")
      ->type_name("FILE")
      ->check(not_empty)
      ->configurable(false)
      ->group(group);
}

void add_settings_options(CLI::App& command, std::string& to) {
  add_settings_option(command);
  command
      .add_option("--save-settings", to,
                  "writes the options of this run, but for pictures, output and summary, as a file for --settings")
      ->type_name("FILE")
      ->check(not_empty)
      ->configurable(false)
      ->group(group);
}

std::vector<std::string> settings_read(const CLI::App& command) { return command.get_option("--settings")->results(); }

saved_settings::saved_settings(CLI::App& command, const std::string& path, const std::vector<std::string>& inputs)
    : set_(std::filesystem::path(path).parent_path()) {
  const std::vector<std::string> read = settings_read(command);
  for (const std::string& input : inputs) {
    if (std::ranges::count(read, input) == 0) set_.protect(input);
  }
  if (path.empty()) return;
  output_file& file = set_.add(std::filesystem::path(path).filename());
  file.write(settings_of(command, path));
  file.close();  // before the run: if there is no room for it, the run does nothing
}

}  // namespace vrk::tool
