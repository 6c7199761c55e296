// Measures rows of the library beside those that stood before, or beside the defined ones, in turns within one run.
#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "bench/paired/cases.h"
#include "bench/paired/tables.h"

namespace {

using namespace vrk::bench;

constexpr const char* usage =
    "usage: vrk_paired [--before LIBRARY] [--pictures DIR] [--table FILE] [--turn MS] [--rounds N] [TABLE ...]\n"
    "  --before LIBRARY  another build of the shared library, whose rows count as those before (the defined rows)\n"
    "  --pictures DIR    more pictures to take separations from\n"
    "  --table FILE      every measurement, separated by tabs\n"
    "  --turn MS         processor time of a turn, in milliseconds (2)\n"
    "  --rounds N        turns of every candidate (51)\n"
    "  TABLE             bars, zeros, hard or widths (all)\n";

int run(int argc, char** argv) {
  std::string library_path, pictures_path, table_path;
  effort effort;
  constexpr option options[] = {{"before", required_argument, nullptr, 'b'},
                                {"pictures", required_argument, nullptr, 'p'},
                                {"table", required_argument, nullptr, 't'},
                                {"turn", required_argument, nullptr, 'm'},
                                {"rounds", required_argument, nullptr, 'r'},
                                {"help", no_argument, nullptr, 'h'},
                                {}};
  for (int c; (c = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
    if (c == 'b') library_path = optarg;
    if (c == 'p') pictures_path = optarg;
    if (c == 't') table_path = optarg;
    if (c == 'm') effort.turn_seconds = 1e-3 * std::stod(optarg);
    if (c == 'r') effort.rounds = unsigned(std::stoul(optarg));
    if (c == 'h') return std::fputs(usage, stdout), 0;
    if (c == '?') return std::fputs(usage, stderr), 2;
  }
  if (effort.rounds == 0) return std::fputs(usage, stderr), 2;
  std::vector<std::string> tables(argv + optind, argv + argc);
  if (tables.empty()) tables = {"bars", "zeros", "hard", "widths"};

  const std::vector<picture> read = pictures_path.empty() ? std::vector<picture>{} : read_pictures(pictures_path);
  std::vector<input> pictures;
  for (const picture& p : read) pictures.push_back({p.name, &p, planes_from::separations});
  session measure(library_path.empty() ? std::nullopt : std::optional(load_library(library_path)), effort);
  for (const std::string& table : tables) {
    if (table == "bars") {
      print_bars(measure, pictures);
    } else if (table == "zeros") {
      print_zeros(measure, pictures);
    } else if (table == "hard") {
      print_hard_cases(measure);
    } else if (table == "widths") {
      print_widths(measure);
    } else {
      return std::fputs(usage, stderr), 2;
    }
    std::printf("\n");
  }
  if (!table_path.empty()) measure.write_table(table_path);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vrk_paired: %s\n", e.what());
    return 1;
  }
}
