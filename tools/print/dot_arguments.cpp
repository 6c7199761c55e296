#include "tools/print/dot_arguments.h"

#include <cstdio>

#include "kit/error_filters.h"
#include "kit/threshold_matrices.h"

namespace vrk::tool {
namespace {

// The names of a list of named things, for a check.
template <class Named>
std::vector<std::string> names_of(const Named& all) {
  std::vector<std::string> names;
  for (const auto& one : all) names.emplace_back(one.name);
  return names;
}

std::string parse_cells(const std::string& text, std::optional<dot_scale>& cells) {
  dot_scale size;
  char rest;
  if (std::sscanf(text.c_str(), "%1ux%1u%c", &size.x, &size.y, &rest) != 2 ||
      (size.x != 1 && size.x != 2 && size.x != 4) || size.y < 1 || size.y > 4) {
    return "--cells " + text + ": expected SXxSY with SX 1, 2 or 4 and SY 1 to 4, such as 2x2";
  }
  cells = size;
  return {};
}

}  // namespace

void add_dot_options(CLI::App& command, dot_options& to) {
  const std::string group = "Dots";
  command.add_option("--halftone", to.halftone, "ed: error diffusion; dither: threshold matrix (default ed)")
      ->check(CLI::IsMember({"ed", "dither"}))
      ->group(group);
  command
      .add_option("--levels", to.levels,
                  "levels of a dot: up to 16, by dither up to 255 (default 2); with --cells, levels of a cell")
      ->check(CLI::Range(2, 255))
      ->group(group);
  command
      .add_option("--filter", to.filter,
                  "error diffusion: error filter (default " + std::string(kit::default_error_filter) + ")")
      ->check(CLI::IsMember(names_of(kit::error_filters)))
      ->group(group);
  command
      .add_option("--modulation", to.modulation,
                  "error diffusion: modulation of the thresholds (default strong with the filter smooth, else noise)")
      ->check(CLI::IsMember({"none", "noise", "strong"}))
      ->group(group);
  command
      .add_option("--precision", to.precision,
                  "error diffusion: bits at which 8-bit samples are diffused, 8 or 10 (default 10); 16: as --width16")
      ->check(CLI::IsMember({"8", "10", "16"}))
      ->group(group);
  command
      .add_option_function<std::string>(
          "--cells",
          [&to](const std::string& text) {
            if (const std::string wrong = parse_cells(text, to.cells); !wrong.empty())
              throw CLI::ValidationError(wrong);
          },
          "error diffusion: every pixel becomes SX x SY dots")
      ->type_name("SXxSY")
      ->group(group);
  command.add_option("--matrix", to.matrix, "dither: threshold matrix (default blue-noise)")
      ->check(CLI::IsMember(std::vector<std::string>(kit::matrix_names.begin(), kit::matrix_names.end())))
      ->group(group);
}

}  // namespace vrk::tool
