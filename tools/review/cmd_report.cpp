#include <cstdio>
#include <memory>

#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/image/image_writer.h"
#include "tools/review/report_plots.h"
#include "tools/review/report_table.h"

namespace vrk::tool {
namespace {

struct report_arguments {
  std::string directory, modulation = "noise";
  std::vector<std::string> images;
  bool only_photographs = false, only_planes = false;
  report_options options;
};

// What other programs have to halftone, so that their dots can be measured.
void write_planes(const std::vector<photograph>& photographs, const report_options& options, output_set& files) {
  for (const photograph& p : photographs) {
    for (std::size_t plane = 0; plane < p.inks.inks; ++plane) {
      const std::string name = p.name + "-" + std::string(plane_names[plane]) + ".pgm";
      const auto to =
          write_pgm(files.add(name), p.inks.width, p.inks.height, 255, {options.view.dpi, options.view.dpi});
      std::vector<std::uint8_t> line(p.inks.width);
      for (unsigned y = 0; y < p.inks.height; ++y) {
        for (unsigned x = 0; x < p.inks.width; ++x) {
          line[x] = std::uint8_t(255 - p.inks.line(y)[std::size_t{x} * p.inks.inks + plane]);
        }
        to->write_line(line.data());
      }
      to->finish();
    }
  }
}

void report(report_arguments& arguments) {
  report_options& options = arguments.options;
  options.noise = arguments.modulation == "noise";
  options.patches = !arguments.only_photographs;
  output_set files(arguments.directory);
  for (const std::string& path : arguments.images) {
    options.images.emplace_back().path = path;
    files.protect(path);
  }
  for (const std::string& path : options.against) files.protect(path);
  const std::vector<halftone_choice> choices = chosen(options);
  const std::vector<photograph> photographs = read_photographs(options);

  if (arguments.only_planes) {
    write_planes(photographs, options, files);
  } else {
    const std::vector<photograph_row> rows = measure_photographs(photographs, choices, options);
    if (options.patches) {
      const std::vector<choice_report> reports = measure(choices, options);
      plot_tones(reports, options, files.add("tones.png"));
      plot_spectra(reports, options, files.add("spectra.png"));
      plot_noise(reports, options, files.add("noise.png"));
      show(reports, options);
      std::printf("\n");
    }
    plot_photographs(rows, photographs, options, files.add("photographs.png"));
    show(rows, photographs, options);
  }
  const std::vector<std::filesystem::path> paths = files.paths();
  files.keep();
  std::printf("\n");
  for (const auto& path : paths) std::printf("%s\n", printable(path.string()).c_str());
}

}  // namespace

void add_report_command(CLI::App& app) {
  const auto arguments = std::make_shared<report_arguments>();
  report_options& options = arguments->options;
  CLI::App* const command = app.add_subcommand(
      "report",
      "Measures every filter and matrix: tone, visible noise, lines, rims and seams of flat patches; noise and colours "
      "of photographs");
  command->add_option("images", arguments->images, "photographs of at least 256 x 256 pixels (default: a built-in one)")
      ->type_name("IMAGE ...")
      ->check(not_empty);
  command->add_option("-o,--output", arguments->directory, "directory for the plots")
      ->type_name("DIR")
      ->check(not_empty)
      ->required();
  command
      ->add_option("--against", options.against,
                   "planes that another program made of the photographs, one bit a dot: PROGRAM/PHOTOGRAPH-PLANE.pbm, "
                   "where PLANE is k, c, m, y, lc or lm")
      ->type_name("FILE.pbm ...")
      ->check(not_empty);
  command->add_flag("--planes", arguments->only_planes,
                    "only write the inks of the photographs, for another program to halftone: PHOTOGRAPH-PLANE.pgm, "
                    "black for full ink");
  command->add_flag("--no-patches", arguments->only_photographs, "only photographs");
  command->add_option("--only", options.only, "filters and matrices to measure (default: all)")
      ->type_name("NAME,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--dpi", options.view.dpi, "dots per inch, for what an eye sees")
      ->check(CLI::Range(50.0, 10000.0))
      ->capture_default_str();
  command->add_option("--distance", options.view.distance_cm, "from eye to paper in cm")
      ->check(CLI::Range(5.0, 1000.0))
      ->capture_default_str();
  command->add_option("--inks", options.inks, "inks of the photographs: 1: K, 4: K C M Y, 6: with light inks")
      ->check(CLI::IsMember({"1", "4", "6"}))
      ->capture_default_str();
  command->add_option("--tone", options.tones, "tones of the patches whose spectra are measured; 255 is full ink")
      ->type_name("T,T,...")
      ->delimiter(',')
      ->check(CLI::Range(1, 254))
      ->capture_default_str();
  command->add_option("--levels", options.levels, "levels of a dot")->check(CLI::Range(2, 16))->capture_default_str();
  command->add_option("--modulation", arguments->modulation, "modulation of the thresholds of error diffusion")
      ->check(CLI::IsMember({"none", "noise"}))
      ->capture_default_str();
  command->footer(help_footer({"vrk report photo.jpg -o out/ --only fan,blue-noise --distance 30",
                               "vrk report photo.jpg -o out/ --against other/photo-*.pbm"}));
  command->callback([arguments] { report(*arguments); });
}

}  // namespace vrk::tool
