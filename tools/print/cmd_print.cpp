#include <unistd.h>

#include <memory>
#include <string>

#include "tools/color/open_picture.h"
#include "tools/command_line/help.h"
#include "tools/command_line/settings.h"
#include "tools/commands.h"
#include "tools/files/standard_output.h"
#include "tools/image/picture_input.h"
#include "tools/page/page.h"
#include "tools/page/page_arguments.h"
#include "tools/print/blob_argument.h"
#include "tools/print/curve_argument.h"
#include "tools/print/print_arguments.h"
#include "tools/print/print_page.h"
#include "tools/print/print_pages.h"
#include "tools/raster/ghostscript.h"
#include "tools/raster/raster_stream.h"
#include "tools/sandbox/open_pages.h"

namespace vrk::tool {
namespace {

struct print_arguments {
  image_argument image;
  std::string directory;
  page_options page;
  print_options options;
  summary told{};
  std::string save_settings;
  unsigned dpi = unsigned(usual_dpi.x);
};

void add_print_arguments(CLI::App& command, print_arguments& to) {
  command
      .add_option("-o,--output", to.directory,
                  "directory for the files; -: the one plane, the TIFF or the raster stream goes to standard output, "
                  "the summary to standard error, and there are no other files. Without it, --format cups and pwg "
                  "write to standard output")
      ->type_name("DIR")
      ->check(not_empty)
      ->configurable(false);
  add_print_options(command, to.options);
  add_summary_options(command, to.told);
}

// Where a print goes that names no place: a raster stream to the next program, as that of any filter.
void choose_output(print_arguments& arguments) {
  if (!arguments.directory.empty()) return;
  if (!is_raster_stream(arguments.options.format)) throw CLI::RequiredError("--output");
  if (isatty(STDOUT_FILENO) != 0) throw usage_error("a raster stream is nothing for a terminal: expected -o or a pipe");
  arguments.directory = "-";
}

// The file of settings that a print is to leave. It replaces nothing that the print reads or writes.
class print_settings {
 public:
  print_settings(CLI::App& command, const print_arguments& arguments, const std::vector<std::string>& inputs)
      : file_(command, arguments.save_settings, inputs) {}

  void protect(const print_report& printed) {
    for (const std::string& file : printed.tables) file_.protect(file);
    for (const std::filesystem::path& file : printed.files) file_.protect(file.string());
  }
  void keep() { file_.keep(); }

 private:
  saved_settings file_;
};

// Prints what the source has, and then leaves the settings of this print where they are asked for. stream: its pages
// are those of a stream.
void print_and_save(CLI::App& command, const print_arguments& arguments, const page_source& source,
                    print_options options, bool stream) {
  options.silent = arguments.told == summary::quiet;
  const bool to_directory = arguments.directory != "-";
  const picture_options& asked = arguments.options.pictures;
  const bool of_pictures = asked.detail_centre || asked.preview_size != picture_options{}.preview_size;
  if (!to_directory && of_pictures) {
    throw usage_error("-o - draws no pictures: --detail and --preview-size belong to a directory");
  }
  if (options.order && options.format != print_format::cups) {
    throw usage_error("--order belongs to --format cups");
  }
  print_settings settings(command, arguments, source.inputs);
  std::vector<print_report> told;  // of one picture: when all is done
  const auto tell = [&](const print_report& report) {
    settings.protect(report);
    if (stream) show(report, arguments.told, to_directory ? stdout : stderr);
    if (!stream) told.push_back(report);
  };
  if (!to_directory) {
    refuse_as_standard_output(source.inputs);
    print_pages_to_standard_output(source, options, tell);
  } else if (stream) {
    page_printer printer(options);
    print_pages(source, printer, arguments.directory, tell);
  } else {
    output_set files(arguments.directory);
    for (const std::string& input : source.inputs) files.protect(input);
    tell(print_page(*source.next(), options, files));
  }
  settings.keep();
  for (const print_report& report : told) show(report, arguments.told, to_directory ? stdout : stderr);
}

// One picture, which is on its page.
void print_picture(CLI::App& command, const print_arguments& arguments, const print_options& options,
                   std::unique_ptr<image_reader> page, const std::vector<std::string>& inputs) {
  const std::string name = page->name();
  print_and_save(command, arguments, {name, [&] { return std::move(page); }, inputs}, options, false);
}

void print_stream(CLI::App& command, const print_arguments& arguments, const print_options& options,
                  const page_supply& stream, const std::string& name, const std::vector<std::string>& inputs) {
  const auto next = [&]() -> std::unique_ptr<image_reader> {
    auto page = stream();
    if (page == nullptr) return page;
    page_options as = arguments.page;
    if (!as.dpi) as.dpi = page->dpi();
    return lay_out(give_colors(std::move(page), arguments.image, !options.inks.profile.to.empty()), as);
  };
  print_and_save(command, arguments, {name, next, inputs}, options, true);
}

// Files that a print reads beside its picture; of those that are named among other words, the print itself knows.
std::vector<std::string> inputs_of(const CLI::App& command, const print_options& options) {
  std::vector<std::string> inputs = settings_read(command);
  const table_files& tables = options.files;
  for (const std::string& file :
       {tables.csc1, tables.csc2, tables.edpr, tables.edtb, tables.dith, options.inks.profile.to}) {
    if (!file.empty()) inputs.push_back(file);
  }
  return inputs;
}

void print_sample(CLI::App& command, const print_arguments& arguments) {
  print_options options = arguments.options;
  // detail.png shows the balloon of the page's photograph.
  const auto pixels = [&](double mm) { return unsigned(mm / mm_per_inch * arguments.dpi + 0.5); };
  options.pictures.detail_centre = {pixels(54), pixels(50.5)};
  print_picture(command, arguments, options, read_sample_page(arguments.dpi), inputs_of(command, options));
}

void run_print(CLI::App& command, const print_arguments& arguments) {
  const print_options& options = arguments.options;
  std::vector<std::string> inputs = inputs_of(command, options);
  inputs.push_back(arguments.image.path);
  if (arguments.image.is_profile_named()) inputs.push_back(arguments.image.profile);

  const auto pages_of = [&](picture_input from, end_of_stream ended) {
    return open_pages(std::move(from), arguments.image.limits, arguments.image.sandbox, std::move(ended));
  };
  picture_input input = open_input(arguments.image.path);
  if (begins_raster_stream(input.first, input.second)) {
    const std::string name = input.name;
    return print_stream(command, arguments, options, pages_of(std::move(input), {}), name, inputs);
  }
  if (begins_document(input.first, input.second)) {
    const std::string name = input.name;
    ghostscript drawing(std::move(input), arguments.page.dpi.value_or(usual_dpi));
    picture_input drawn{drawing.take_pages(), name, 'R', 'a'};  // which its stream begins with, unless it fails
    const auto check_end = [&](unsigned pages) { drawing.check_end(pages); };
    return print_stream(command, arguments, options, pages_of(std::move(drawn), check_end), name, inputs);
  }
  auto picture = pages_of(std::move(input), {})();
  const bool has_profile = !options.inks.profile.to.empty();
  auto page = lay_out(give_colors(std::move(picture), arguments.image, has_profile), arguments.page);
  print_picture(command, arguments, options, std::move(page), inputs);
}

}  // namespace

void add_print_command(CLI::App& app) {
  const auto arguments = std::make_shared<print_arguments>();
  CLI::App* const command =
      app.add_subcommand("print", "Prints a picture: plane files, a preview, and an enlarged detail");
  add_settings_options(*command, arguments->save_settings);
  add_image_argument(*command, arguments->image);
  command->get_option("image")
      ->description(
          "PNG, JPEG, TIFF, WebP, PBM, PGM, PPM or PAM; a raster stream (CUPS, PWG, Apple); PDF or PostScript, where "
          "Ghostscript is installed; - for standard input. Each page of a stream or document is printed into a "
          "directory of its own and kept as soon as it is whole")
      ->configurable(false);
  add_page_options(*command, arguments->page);
  add_print_arguments(*command, *arguments);
  add_detail_option(*command, arguments->options.pictures);
  command->footer(help_footer({"vrk print photo.jpg -o out/ --size 10x15cm --fill --dpi 600",
                               "vrk print photo.jpg -o out/ --profile press.icc --ink-limit 280 --levels 4",
                               "vrk print photo.jpg -o out/ --settings press.conf --quiet"},
                              {curve_help, blob_help}));
  command->callback([arguments, command] {
    choose_output(*arguments);
    run_print(*command, *arguments);
  });
}

void add_demo_command(CLI::App& app) {
  const auto arguments = std::make_shared<print_arguments>();
  CLI::App* const command = app.add_subcommand("demo", "Prints the built-in sample page");
  add_settings_options(*command, arguments->save_settings);
  add_print_arguments(*command, *arguments);
  command->add_option("--dpi", arguments->dpi, "pixels per inch of the A4 page")
      ->check(CLI::Range(20, 2400))
      ->capture_default_str();
  command->footer(help_footer({"vrk demo -o out/ --dpi 300 --inks 6"}, {curve_help, blob_help}));
  command->callback([arguments, command] {
    choose_output(*arguments);
    print_sample(*command, *arguments);
  });
}

}  // namespace vrk::tool
