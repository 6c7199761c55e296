#include <cstdio>
#include <memory>

#include "tools/calibrate/cgats.h"
#include "tools/calibrate/chart_reader.h"
#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/page/page_arguments.h"
#include "tools/print/contradictions.h"
#include "tools/print/dot_arguments.h"
#include "tools/print/preset_tables.h"
#include "tools/print/print_page.h"
#include "tools/print/print_pipeline.h"

namespace vrk::tool {
namespace {

struct chart_arguments {
  std::string directory;
  chart_options chart;
  page_options page;
  print_options options;
};

void print_chart(const chart_arguments& arguments) {
  const print_options& options = arguments.options;
  chart_options wanted = arguments.chart;
  if (arguments.page.paper) wanted.paper = *arguments.page.paper;
  const step_chart chart = lay_out_chart(wanted);

  const bool samples16 = options.precision() == ed_precision::samples16;
  const auto page = read_chart(chart, wanted.paper, arguments.page.dpi.value_or(usual_dpi), samples16 ? 16 : 8);
  print_tables tables;
  refuse_contradictions(options, tables, {page->channels(), page->bits()});
  choose_halftone_tables(options.dots, chart.inks, samples16, tables);
  pipeline stages(page->width(), {page->channels(), page->bits()});
  finish_with_halftone(tables, options.precision(), stages);

  output_set files(arguments.directory);
  files.add("chart.ti2").write(cgats_of(chart));
  const print_report report = print_through(stages, *page, tables, options, files);
  const auto name = [&](const char* file) { return printable((files.directory() / file).string()); };
  std::printf("%u ramp%s of %u steps in %u ink%s, %g x %g mm at %s dpi, patches of %g mm\n", chart.ramps,
              chart.ramps == 1 ? "" : "s", chart.steps, chart.inks, chart.inks == 1 ? "" : "s", wanted.paper.width,
              wanted.paper.height, text_of(report.dpi).c_str(), chart.side);
  std::printf("Its patches: %s\nThe page: %s\n", name("chart.ti2").c_str(), name("preview.png").c_str());
}

}  // namespace

void add_chart_command(CLI::App& app) {
  const auto arguments = std::make_shared<chart_arguments>();
  CLI::App* const command = app.add_subcommand(
      "chart", "Prints a step chart of the inks, without curves, and writes what its patches are as chart.ti2");
  command->add_option("-o,--output", arguments->directory, "directory for the files")
      ->type_name("DIR")
      ->check(not_empty)
      ->required();
  command->add_option("--inks", arguments->chart.inks, "1: K, 4: K C M Y, 6: with light cyan and light magenta")
      ->check(CLI::IsMember({"1", "4", "6"}))
      ->capture_default_str();
  command->add_option("--steps", arguments->chart.steps, "patches of each ramp, paper and full tone included")
      ->check(CLI::Range(5, 256))
      ->capture_default_str();
  add_paper_options(*command, arguments->page, "A4");
  add_dot_options(*command, arguments->options.dots);
  command->footer(help_footer({"vrk chart -o out/ --inks 6 --levels 4"}));
  command->callback([arguments] { print_chart(*arguments); });
}

}  // namespace vrk::tool
