#include "tools/command_line/option_facts.h"

#include <regex>

namespace vrk::tool {

bool option_facts::is_file() const {
  const auto holds = [&](const char* name) { return type.find(name) != type.npos; };
  return holds("FILE") || holds("DIR") || holds("ICC") || holds("IMAGE") || holds("CURVE");
}

option_facts facts_of(const CLI::Option& option) {
  option_facts facts;
  if (option.get_expected_max() == 0) return facts;  // a flag
  static const std::regex checked(R"((.*?)(?::\{(.*)\}|:(?:\w+ in \[|a number from )(\S+)(?: - | to )([^\]]+)\]?)?)");
  std::smatch parts;
  const std::string described = option.get_type_name();
  std::regex_match(described, parts, checked);
  facts.type = parts[1];
  if (facts.type == "UINT" || facts.type == "INT" || facts.type == "FLOAT") facts.type = "N";
  if (facts.type == "TEXT") facts.type = "NAME";
  if (parts[2].matched) facts.words = CLI::detail::split(parts[2], ',');
  if (parts[3].matched) facts.range = parts[3].str() + " to " + parts[4].str();
  return facts;
}

std::vector<const CLI::App*> shown_commands(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<const CLI::Option*> shown_options(const CLI::App& command) {
  return command.get_options(
      [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

}  // namespace vrk::tool
