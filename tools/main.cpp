#include <vrk.h>

#include <cstdio>
#include <exception>

#include "tools/commands.h"
#include "tools/pipeline/user_error.h"

int main(int argc, char** argv) {
  CLI::App app("vrk: prints pictures with the colour library, and shows the dots", "vrk");
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("vrk ") + vrk_get_version());
  vrk::tool::add_print_command(app);
  vrk::tool::add_demo_command(app);
  vrk::tool::add_tables_command(app);
  vrk::tool::add_compare_command(app);
  vrk::tool::add_report_command(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const vrk::tool::user_error& error) {
    std::fprintf(stderr, "vrk: %s\n", error.what());
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vrk: internal error: %s\n", error.what());
    return 2;
  }
}
