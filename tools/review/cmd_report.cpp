#include <cstdio>
#include <memory>

#include "tools/commands.h"
#include "tools/image/output_file.h"
#include "tools/review/report.h"

namespace vrk::tool {
namespace {

struct report_arguments {
  std::string directory, modulation = "noise";
  report_options options;
};

void report(report_arguments& arguments) {
  report_options& options = arguments.options;
  options.noise = arguments.modulation == "noise";
  make_directory(arguments.directory);
  const auto tones = std::filesystem::path(arguments.directory) / "tones.png";
  const auto spectra = std::filesystem::path(arguments.directory) / "spectra.png";
  const std::vector<choice_report> reports = measure(options);
  plot_tones(reports, options, tones);
  plot_spectra(reports, options, spectra);
  show(reports, options);
  std::printf("\nThe tones: %s\nThe spectra: %s\n", tones.c_str(), spectra.c_str());
}

}  // namespace

void add_report_command(CLI::App& app) {
  const auto arguments = std::make_shared<report_arguments>();
  report_options& options = arguments->options;
  CLI::App* const command = app.add_subcommand(
      "report", "Measures every filter and matrix on flat patches of black: tone, and how evenly the dots lie");
  command->add_option("-o,--output", arguments->directory, "directory for tones.png and spectra.png")
      ->type_name("DIR")
      ->required();
  command->add_option("--tone", options.tone, "of the patch whose spectrum is taken; 255 is all the ink")
      ->check(CLI::Range(1, 254))
      ->capture_default_str();
  command->add_option("--levels", options.levels, "levels of a dot")->check(CLI::Range(2, 16))->capture_default_str();
  command->add_option("--modulation", arguments->modulation, "of the thresholds of error diffusion")
      ->check(CLI::IsMember({"none", "noise"}))
      ->capture_default_str();
  command->callback([arguments] { report(*arguments); });
}

}  // namespace vrk::tool
