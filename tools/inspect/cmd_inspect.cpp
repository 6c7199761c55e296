#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>

#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/files/output_set.h"
#include "tools/inspect/drawings.h"
#include "tools/inspect/text.h"
#include "tools/print/blob_argument.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

struct inspect_arguments {
  std::vector<std::string> files;
  std::string plot;
  bool json = false;
};

void plot(const table& image, const tree& told, output_file& to) {
  const std::vector<drawing> drawings = drawings_of(image);
  sheet cells(drawings.size(), drawing::width, drawing::height);
  const bool all = drawings.size() < most_drawings;
  const std::string remark = drawings.empty() ? "nothing to draw" : all ? "" : "the first drawings of many";
  cells.title(printable(fs::path(image.name).filename().string()),
              told["kind"].get<std::string>() + (remark.empty() ? "" : ", " + remark));
  for (const drawing& d : drawings) d.draw(cells.picture(), cells.add(d.name, d.remark));
  cells.picture().save(to);
}

// Where the drawings of the files go. One name serves one file; else every file gets a name of its own in a directory.
class plots {
 public:
  explicit plots(const inspect_arguments& arguments)
      : one_file_(fs::path(arguments.plot).extension() == ".png"),
        set_(one_file_ ? fs::path(arguments.plot).parent_path() : fs::path(arguments.plot)) {
    if (one_file_ && arguments.files.size() > 1) {
      throw usage_error("--plot " + arguments.plot + ": takes one FILE, give a directory for several");
    }
    if (one_file_) one_name_ = fs::path(arguments.plot).filename();
    for (const std::string& file : arguments.files) set_.protect(file);
  }

  void add(const table& image, const tree& told) {
    output_file& to = set_.add(one_file_ ? one_name_ : own_name(image) + ".png");
    paths_.push_back(to.path().string());
    plot(image, told, to);
    to.close();
  }

  void keep() { set_.keep(); }
  const std::vector<std::string>& paths() const { return paths_; }

 private:
  // Files of different directories may have the same name.
  std::string own_name(const table& image) {
    const std::string name = fs::path(image.name).filename().string();
    std::string own = name;
    for (unsigned number = 2; !names_.insert(own).second; ++number) own = name + "-" + std::to_string(number);
    return own;
  }

  bool one_file_;
  output_set set_;
  std::string one_name_;
  std::set<std::string> names_;
  std::vector<std::string> paths_;
};

// Told of a file that cannot be read as well.
tree inspect_file(const std::string& file, std::optional<plots>& drawn) {
  tree told{{"file", file}};
  std::optional<table> image;
  try {
    image = read_table(file);
  } catch (const user_error& error) {
    told.update({{"taken", false}, {"unreadable", printable(error.what())}});
    return told;
  }
  told.update(describe(*image));
  if (drawn) drawn->add(*image, told);
  return told;
}

void print_text(const tree& all) {
  for (tree told : all) {
    std::printf("%s\n", printable(told["file"].get<std::string>()).c_str());
    told.erase("file");
    std::printf("%s", text_of(told, "  ").c_str());
  }
}

void inspect(const inspect_arguments& arguments) {
  std::optional<plots> drawn;
  if (!arguments.plot.empty()) drawn.emplace(arguments);
  tree all = tree::array();
  std::size_t refused = 0;
  for (const std::string& file : arguments.files) {
    all.push_back(inspect_file(file, drawn));
    refused += all.back()["taken"].get<bool>() ? 0 : 1;
  }
  if (drawn) drawn->keep();
  if (arguments.json) {
    // Names of files need not be UTF-8, JSON must be.
    std::printf("%s\n", all.dump(2, ' ', true, tree::error_handler_t::replace).c_str());
  } else {
    print_text(all);
    for (std::size_t p = 0; drawn && p < drawn->paths().size(); ++p) {
      std::printf("Drawn: %s\n", printable(drawn->paths()[p]).c_str());
    }
  }
  if (refused != 0) {
    throw user_error(std::to_string(refused) + " of " + std::to_string(all.size()) +
                     (all.size() == 1 ? " file" : " files") + " refused");
  }
}

}  // namespace

void add_inspect_command(CLI::App& app) {
  const auto arguments = std::make_shared<inspect_arguments>();
  CLI::App* const command =
      app.add_subcommand("inspect", "Shows what tables and parameter blobs hold, or why the library refuses them");
  command->add_option("files", arguments->files, "tables and blobs")->type_name("FILE")->check(not_empty)->required();
  command->add_flag("--json", arguments->json, "the same for programs, with all numbers");
  command
      ->add_option("--plot", arguments->plot,
                   "also draws curves, what grays become, matrices and their spectra, and dot cells: a picture for "
                   "each FILE in this directory, or FILE.png for one")
      ->type_name("DIR")
      ->check(not_empty);
  command->footer(
      help_footer({"vrk inspect table.csc2 blob.ctsi", "vrk inspect levels.edpr --plot out/"},
                  {"Exit code 1 when the library refuses one of the files; the others are shown all the same."}));
  command->callback([arguments] { inspect(*arguments); });
}

}  // namespace vrk::tool
