#include <memory>
#include <string>

#include "kit/error_filters.h"
#include "tools/commands.h"
#include "tools/print_page.h"

namespace vrk::tool {
namespace {

struct print_arguments {
  std::string image, directory;
  print_options options;
  std::vector<unsigned> detail_centre;
  bool sample = false;
  unsigned dpi = 600;
};

std::vector<std::string> filter_names() {
  std::vector<std::string> names;
  for (const kit::error_filter& filter : kit::error_filters) names.emplace_back(filter.name);
  return names;
}

void add_output(CLI::App& command, print_arguments& to) {
  command.add_option("-o,--output", to.directory, "directory for the files")->type_name("DIR")->required();
}

// What the kit's tables are made with.
void add_table_options(CLI::App& command, print_options& to) {
  command.add_option("--inks", to.inks, "1: K, 4: K C M Y, 6: with light cyan and light magenta (default 4)")
      ->check(CLI::IsMember({1, 4, 6}));
  command.add_option("--levels", to.levels, "levels of a dot; bits per pixel follow")
      ->check(CLI::IsMember({2, 3, 4, 16}))
      ->capture_default_str();
  command.add_option("--filter", to.filter, "error filter")
      ->check(CLI::IsMember(filter_names()))
      ->capture_default_str();
  command.add_option("--modulation", to.modulation, "threshold modulation")
      ->check(CLI::IsMember({"none", "noise"}))
      ->capture_default_str();
}

void add_print_options(CLI::App& command, print_arguments& to) {
  add_output(command, to);
  add_table_options(command, to.options);
  command
      .add_option("--precision", to.options.precision,
                  "8 or 10: 8-bit samples, diffused at so many bits; 16: 16-bit samples all the way")
      ->check(CLI::IsMember({8, 10, 16}))
      ->capture_default_str();
}

void add_user_tables(CLI::App& command, print_options& to) {
  const std::string group = "Tables of your own";
  command.add_option("--csc1", to.csc1, "RGB to RGB, before the inks")->type_name("FILE")->group(group);
  command.add_option("--csc2", to.csc2, "RGB to inks")->type_name("FILE")->group(group);
  command.add_option("--edpr", to.edpr, "error diffusion parameters")->type_name("FILE")->group(group);
  command.add_option("--edtb", to.edtb, "error distribution")->type_name("FILE")->group(group);
  command
      .add_option("--blob", to.blobs,
                  "parameter blob; its type says what it holds. Selectors follow a colon: family=H|X, kind, a, b, c, d "
                  "(colour), levels (halftone), such as colors.bin:family=X,kind=0,a=1")
      ->type_name("FILE[:SELECTOR=VALUE,...]")
      ->group(group);
}

void print_sample(const print_arguments& arguments) {
  // Millimetres of the page to pixels; the window shows the balloon of the page's photograph.
  const auto pixels = [&](double mm) { return unsigned(mm / 25.4 * arguments.dpi + 0.5); };
  const auto page = read_sample_page(pixels(210), pixels(297));
  show(print_page(*page, arguments.options, arguments.directory, detail::place{pixels(54), pixels(50.5)}),
       arguments.directory);
}

void run_print(const print_arguments& arguments) {
  const auto image = open_image(arguments.image);
  std::optional<detail::place> centre;
  if (!arguments.detail_centre.empty()) centre = {arguments.detail_centre[0], arguments.detail_centre[1]};
  show(print_page(*image, arguments.options, arguments.directory, centre), arguments.directory);
}

}  // namespace

void add_print_command(CLI::App& app) {
  const auto arguments = std::make_shared<print_arguments>();
  CLI::App* const command = app.add_subcommand("print", "Prints a picture: plane files, a preview, and a few dots");
  command->add_option("image", arguments->image, "PNG, JPEG, PBM, PGM, PPM or PAM; - for standard input")
      ->type_name("IMAGE")
      ->required();
  add_print_options(*command, *arguments);
  command->add_option("--detail", arguments->detail_centre, "centre of detail.png, in pixels (default: the page's)")
      ->type_name("X Y")
      ->expected(2);
  add_user_tables(*command, arguments->options);
  command->callback([arguments] { run_print(*arguments); });
}

void add_demo_command(CLI::App& app) {
  const auto arguments = std::make_shared<print_arguments>();
  CLI::App* const command = app.add_subcommand("demo", "Prints the embedded test page");
  add_print_options(*command, *arguments);
  command->add_option("--dpi", arguments->dpi, "pixels per inch of the A4 page")
      ->check(CLI::Range(20, 2400))
      ->capture_default_str();
  command->callback([arguments] { print_sample(*arguments); });
}

}  // namespace vrk::tool
