#include <cstdio>
#include <memory>

#include "tools/color/open_picture.h"
#include "tools/command_line/help.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/page/page.h"
#include "tools/review/compare.h"

namespace vrk::tool {
namespace {

struct compare_arguments {
  image_argument image;
  std::string directory, modulation = "noise";
  std::vector<unsigned> centre;
  compare_options options;
};

void compare(compare_arguments& arguments) {
  auto image = open_picture(arguments.image);
  const orientation seen = image->seen();
  if (seen != orientation{}) image = turn(std::move(image), seen);
  compare_options& options = arguments.options;
  options.noise = arguments.modulation == "noise";
  if (!arguments.centre.empty()) options.centre = {arguments.centre[0], arguments.centre[1]};
  output_set files(arguments.directory);
  files.protect(arguments.image.path);
  if (arguments.image.is_profile_named()) files.protect(arguments.image.profile);
  output_file& sheet = files.add("compare.png");
  const std::string name = sheet.path().string();
  write_comparison(*image, options, sheet);
  files.keep();
  std::printf("Every filter and matrix: %s\n", printable(name).c_str());
}

}  // namespace

void add_compare_command(CLI::App& app) {
  const auto arguments = std::make_shared<compare_arguments>();
  compare_options& options = arguments->options;
  CLI::App* const command =
      app.add_subcommand("compare", "Shows the dots that every filter and matrix makes of a picture, side by side");
  add_image_argument(*command, arguments->image);
  command->add_option("-o,--output", arguments->directory, "directory for compare.png")
      ->type_name("DIR")
      ->check(not_empty)
      ->required();
  command->add_option("--crop", arguments->centre, "centre of the crop, in pixels (default: the picture's centre)")
      ->type_name("X Y")
      ->expected(2)
      ->check(CLI::Range(0, 999999));
  command
      ->add_option("--enlarge", options.enlargement,
                   "side of a dot in compare.png, in pixels; a smaller one shows a larger crop")
      ->check(CLI::Range(1, 16))
      ->capture_default_str();
  command->add_option("--inks", options.inks, "1: K, 4: K C M Y, 6: with light cyan and light magenta (default 4)")
      ->check(CLI::IsMember({"1", "4", "6"}));
  command->add_option("--levels", options.levels, "levels of a dot")->check(CLI::Range(2, 16))->capture_default_str();
  command->add_option("--modulation", arguments->modulation, "modulation of the thresholds of error diffusion")
      ->check(CLI::IsMember({"none", "noise"}))
      ->capture_default_str();
  command->footer(help_footer({"vrk compare photo.jpg -o out/ --crop 1200 800"}));
  command->callback([arguments] { compare(*arguments); });
}

}  // namespace vrk::tool
