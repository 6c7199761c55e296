#include <vrk.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "tools/command_line/completion.h"
#include "tools/command_line/help.h"
#include "tools/command_line/option_facts.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/files/ending_signals.h"
#include "tools/pipeline/user_error.h"

namespace {

enum exit_code { done = 0, cannot = 1, wrong_usage = 2 };

exit_code say(exit_code code, const std::string& why) {
  std::fprintf(stderr, "vrk: %s\n", vrk::tool::printable(why).c_str());
  return code;
}

std::string names_of_commands(const CLI::App& app) {
  std::string names;
  for (const CLI::App* const command : vrk::tool::shown_commands(app)) {
    names += (names.empty() ? "" : ", ") + command->get_name();
  }
  return names;
}

exit_code run(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    return done;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return exit_code(app.exit(error));  // --help and --version
    if (!app.get_subcommands().empty()) return say(wrong_usage, error.what());
    const std::vector<std::string> others = app.remaining();
    return say(wrong_usage, (others.empty() ? "no command is given" : "\"" + others[0] + "\" is no command") +
                                std::string(", expected one of ") + names_of_commands(app));
  } catch (const vrk::tool::usage_error& error) {
    return say(wrong_usage, error.what());
  } catch (const vrk::tool::user_error& error) {
    return say(cannot, error.what());
  } catch (const std::bad_alloc&) {
    return say(cannot, "there is not enough memory for this");
  } catch (const std::exception& error) {
    return say(cannot, std::string("internal error: ") + error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const vrk::tool::ending_signals signals;
  CLI::App app("vrk: prints pictures with the colour library, and shows the dots", "vrk");
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("vrk ") + vrk_get_version());
  app.formatter(std::make_shared<vrk::tool::help_format>());
  vrk::tool::add_print_command(app);
  vrk::tool::add_demo_command(app);
  vrk::tool::add_tables_command(app);
  vrk::tool::add_inspect_command(app);
  vrk::tool::add_link_command(app);
  vrk::tool::add_chart_command(app);
  vrk::tool::add_calibrate_command(app);
  vrk::tool::add_compare_command(app);
  vrk::tool::add_report_command(app);
  vrk::tool::add_completion_command(app);
  app.footer(vrk::tool::help_footer(
      {"vrk demo -o out/", "vrk print photo.jpg -o out/ --size 10x15cm --dpi 600", "vrk print --help"}));
  const exit_code code = run(app, argc, argv);
  if (code == done && (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)) {
    return say(cannot, std::string("standard output: ") + std::strerror(errno));
  }
  return code;
}
