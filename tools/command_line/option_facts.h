// What an option takes, as CLI11 describes its type and its checks: for --help and for completion.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace vrk::tool {

struct option_facts {
  std::string type;                // FILE, N; empty for a flag
  std::vector<std::string> words;  // all that it may be, where that is a list
  std::string range;               // "2 to 255", where it is a number of one

  bool is_file() const;
};

option_facts facts_of(const CLI::Option& option);

// Commands and options that --help shows.
std::vector<const CLI::App*> shown_commands(const CLI::App& app);
std::vector<const CLI::Option*> shown_options(const CLI::App& command);

}  // namespace vrk::tool
