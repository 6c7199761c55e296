#include <cstdio>
#include <map>
#include <memory>

#include "tools/color/profile_link.h"
#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/files/output_set.h"

namespace vrk::tool {
namespace {

using kit::grid_encoding;

struct link_arguments {
  profile_link link;
  profiles::table_form form;
  std::string encoding = "packed12", output;
};

const std::map<std::string, grid_encoding> encodings{
    {"raw16", grid_encoding::raw16}, {"packed12", grid_encoding::packed12}, {"packed10", grid_encoding::packed10},
    {"raw8", grid_encoding::raw8},   {"delta10", grid_encoding::delta10},   {"delta8", grid_encoding::delta8}};

void print_summary(const link_arguments& arguments, const judged_table& linked) {
  const profile_link& link = arguments.link;
  std::printf("%s: %s to %s, %s%s%s, %u points, %s\n", printable(arguments.output).c_str(),
              printable(link.from.value_or("sRGB")).c_str(), printable(link.to).c_str(), link.intent.c_str(),
              linked.intent_served ? "" : " (by its first table: it has none for this intent)",
              link.options.black_point_compensation ? " with black point compensation" : "", arguments.form.points,
              arguments.encoding.c_str());
  const link_accuracy& found = linked.accuracy;
  if (linked.channels != 3) {
    std::printf("Most ink: %.1f %%; gray steps against the profile: %u\n", found.largest_total, found.gray_reversals);
  }
  std::printf("CIEDE2000 between table and Little CMS, 100000 colours: mean %.3f, 99 %% below %.3f, largest %.3f\n",
              found.mean, found.percentile99, found.largest);
}

void write_link(link_arguments& arguments) {
  arguments.form.encoding = encodings.at(arguments.encoding);
  const std::filesystem::path path(arguments.output);
  output_set files(path.parent_path());
  files.protect(arguments.link.to);
  if (arguments.link.from) files.protect(*arguments.link.from);
  output_file& file = files.add(path.filename());
  const judged_table linked = make_judged_table(arguments.link, arguments.form, arguments.output);
  file.write(linked.made.image.data(), linked.made.image.size());
  files.keep();
  print_summary(arguments, linked);
}

}  // namespace

void add_link_command(CLI::App& app) {
  const auto to = std::make_shared<link_arguments>();
  CLI::App* const command = app.add_subcommand(
      "link", "Makes a colour table from ICC profiles: \"csc2\" for four or six inks, \"csc1\" for RGB");
  command->add_option("--to", to->link.to, "profile of the device")->type_name("ICC")->check(not_empty)->required();
  command->add_option("--from", to->link.from, "RGB profile of the pictures (default: sRGB)")
      ->type_name("ICC")
      ->check(not_empty);
  add_profile_options(*command, to->link, "Colour");
  command->add_option("--points", to->form.points, "grid points per axis (default 17)")
      ->check(CLI::Range(2, 255))
      ->group("Table");
  command->add_option("--precision", to->form.precision, "bits that the converter works in (default 12)")
      ->check(CLI::IsMember({"8", "12"}))
      ->group("Table");
  command
      ->add_option("--encoding", to->encoding,
                   "how the samples are stored (default packed12); delta10 is for inks, delta8 for RGB")
      ->check(CLI::IsMember(encodings))
      ->group("Table");
  command->add_option("-o,--output", to->output, "the table")->type_name("FILE")->check(not_empty)->required();
  command->footer(help_footer({"vrk link --to press.icc -o press.csc2",
                               "vrk link --to press.icc --intent relative --bpc --ink-limit 280 -o press.csc2"}));
  command->callback([to] { write_link(*to); });
}

}  // namespace vrk::tool
