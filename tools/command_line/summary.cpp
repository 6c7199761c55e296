#include "tools/command_line/summary.h"

namespace vrk::tool {

void add_summary_options(CLI::App& command, summary& to) {
  const auto add = [&](const char* name, summary chosen, const char* help) {
    return command
        .add_flag_callback(
            name, [&to, chosen] { to = chosen; }, help)
        ->configurable(false)
        ->group("Summary");
  };
  CLI::Option* const verbose = add("--verbose", summary::verbose, "three lines, and the time and flags of every step");
  CLI::Option* const quiet = add("--quiet", summary::quiet, "nothing but errors")->excludes(verbose);
  add("--json", summary::json, "all of it for programs")->excludes(verbose)->excludes(quiet);
}

}  // namespace vrk::tool
