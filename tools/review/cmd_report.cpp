#include <cstdio>
#include <memory>

#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/review/report_plots.h"
#include "tools/review/report_table.h"

namespace vrk::tool {
namespace {

struct report_arguments {
  std::string directory, modulation = "noise";
  report_options options;
};

void report(report_arguments& arguments) {
  report_options& options = arguments.options;
  options.noise = arguments.modulation == "noise";
  output_set files(arguments.directory);
  output_file &tones = files.add("tones.png"), &spectra = files.add("spectra.png");
  const std::string tones_name = tones.path().string(), spectra_name = spectra.path().string();
  const std::vector<choice_report> reports = measure(options);
  plot_tones(reports, options, tones);
  plot_spectra(reports, options, spectra);
  files.keep();
  show(reports, options);
  std::printf("\nThe tones: %s\nThe spectra: %s\n", printable(tones_name).c_str(), printable(spectra_name).c_str());
}

}  // namespace

void add_report_command(CLI::App& app) {
  const auto arguments = std::make_shared<report_arguments>();
  report_options& options = arguments->options;
  CLI::App* const command = app.add_subcommand(
      "report",
      "Measures every filter and matrix on flat patches of black: error of the tone, and spectrum of the dots");
  command->add_option("-o,--output", arguments->directory, "directory for tones.png and spectra.png")
      ->type_name("DIR")
      ->check(not_empty)
      ->required();
  command->add_option("--tone", options.tones, "tones of the patches whose spectra are measured; 255 is full ink")
      ->type_name("T,T,...")
      ->delimiter(',')
      ->check(CLI::Range(1, 254))
      ->capture_default_str();
  command->add_option("--levels", options.levels, "levels of a dot")->check(CLI::Range(2, 16))->capture_default_str();
  command->add_option("--modulation", arguments->modulation, "modulation of the thresholds of error diffusion")
      ->check(CLI::IsMember({"none", "noise"}))
      ->capture_default_str();
  command->footer(help_footer({"vrk report -o out/ --levels 4"}));
  command->callback([arguments] { report(*arguments); });
}

}  // namespace vrk::tool
