#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

#include "tools/calibrate/calibration_plot.h"
#include "tools/calibrate/cgats.h"
#include "tools/command_line/finite_range.h"
#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/files/output_set.h"
#include "tools/print/blob_argument.h"

namespace vrk::tool {
namespace {

struct calibrate_arguments {
  std::string measured, output;
  std::optional<double> dot_gain;  // percent at half tone
};

cgats_table read_cgats(const std::string& path) {
  constexpr std::size_t most = std::size_t{4} << 20;
  const table file = read_table(path);
  if (file.image.size() > most)
    throw user_error(path + ": is longer than measurements of a chart, expected at most 4 MB");
  return parse_cgats({reinterpret_cast<const char*>(file.image.data()), file.image.size()}, path);
}

void print_notes(const measured_inks& measured, const std::vector<ink_calibration>& inks) {
  for (const std::string& note : measured.notes) std::printf("%s\n", note.c_str());
  for (const ink_calibration& ink : inks) {
    std::string steps;
    for (const double tone : falling_steps(ink)) {
      char text[32];
      std::snprintf(text, sizeof text, "%s%.3g %%", steps.empty() ? "" : ", ", tone);
      steps += text;
    }
    if (steps.empty()) continue;
    std::printf("%s: measured no stronger than the step before, smoothed: %s\n", std::string(ink.plane).c_str(),
                steps.c_str());
  }
}

double rounded(double error) { return std::round(100 * error) / 100 + 0.0; }  // no -0

// Of each ink before and after, at every tone that one of them was measured at.
void print_errors(const std::vector<ink_calibration>& inks) {
  std::vector<double> tones;
  for (const ink_calibration& ink : inks) {
    for (const kit::measured_point& step : ink.steps) tones.push_back(step.at);
  }
  std::sort(tones.begin(), tones.end());
  tones.erase(std::unique(tones.begin(), tones.end(), [](double a, double b) { return b - a < 0.002; }), tones.end());

  std::printf("\n  error      ");
  for (const ink_calibration& ink : inks) {
    std::printf(" %-15s", (std::string(ink.plane) + ", " + ink.unit).c_str());
  }
  std::printf("\n    step     ");
  for (std::size_t p = 0; p < inks.size(); ++p) std::printf(" before   after ");
  std::vector<ink_calibration::difference> largest(inks.size());
  for (const double tone : tones) {
    std::printf("\n  %6.1f %%   ", 100 * tone);
    for (std::size_t p = 0; p < inks.size(); ++p) {
      const auto [before, after] = inks[p].error_at(tone);
      largest[p] = {std::max(largest[p].before, std::abs(before)), std::max(largest[p].after, std::abs(after))};
      std::printf(" %6.2f %7.2f ", rounded(before), rounded(after));
    }
  }
  std::printf("\n  largest    ");
  for (const auto& [before, after] : largest) std::printf(" %6.2f %7.2f ", before, after);
  std::printf("\n");
}

void calibrate(const calibrate_arguments& arguments) {
  const measured_inks measured = find_ramps(read_cgats(arguments.measured), arguments.measured);
  std::optional<double> gain;
  if (arguments.dot_gain) gain = *arguments.dot_gain / 100;
  std::vector<ink_calibration> inks;
  for (std::size_t p = 0; p < measured.ramps.size(); ++p) {
    inks.push_back(calibrate_ink(measured.ramps[p], p, gain, arguments.measured));
  }

  const std::filesystem::path path(arguments.output), plot = std::filesystem::path(path).replace_extension(".png");
  if (plot == path) throw usage_error(path.string() + ": is the name of the plot, expected another one for the curves");
  output_set files(path.parent_path());
  files.protect(arguments.measured);
  kit::curve_image image;
  for (const ink_calibration& ink : inks) image.curves.push_back(ink.made.tone);
  const kit::bytes curves = image.encode();
  files.add(path.filename()).write(curves.data(), curves.size());
  plot_calibration(inks, printable(arguments.measured), files.add(plot.filename()));
  files.keep();

  std::printf("%s: %zu curve%s from %s, for a ramp %s\n", printable(path.string()).c_str(), inks.size(),
              inks.size() == 1 ? "" : "s", printable(arguments.measured).c_str(),
              gain ? "of this dot gain" : "that is even");
  print_notes(measured, inks);
  print_errors(inks);
  std::printf("\nThe plot: %s\n", printable(plot.string()).c_str());
}

}  // namespace

void add_calibrate_command(CLI::App& app) {
  const auto to = std::make_shared<calibrate_arguments>();
  CLI::App* const command = app.add_subcommand(
      "calibrate", "Makes curves for --post of `vrk print` from a measured step chart, and plots them beside (.png)");
  command->add_option("measured", to->measured, "measurements in CGATS: a .ti3 file, or what another program exports")
      ->type_name("FILE")
      ->check(not_empty)
      ->required();
  command->add_option("-o,--output", to->output, "the curves, one for each plane")
      ->type_name("FILE")
      ->check(not_empty)
      ->required();
  command
      ->add_option("--dot-gain", to->dot_gain,
                   "gain at half tone that is to remain, 0 to 25 (default: none asked for, the ramp becomes even in "
                   "lightness)")
      ->type_name("PERCENT")
      ->check(finite_range(0, 25).description(""));
  command->footer(
      help_footer({"vrk calibrate chart.ti3 -o press.1dlt", "vrk calibrate chart.ti3 -o press.1dlt --dot-gain 15"}));
  command->callback([to] { calibrate(*to); });
}

}  // namespace vrk::tool
