#include <memory>
#include <set>

#include "kit/blob.h"
#include "kit/color_grids.h"
#include "kit/error_filters.h"
#include "kit/presets.h"
#include "kit/threshold_matrices.h"
#include "kit/tone_curves.h"
#include "tools/command_line/help.h"
#include "tools/command_line/not_empty.h"
#include "tools/command_line/printable.h"
#include "tools/commands.h"
#include "tools/files/output_set.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// Writes table files below one directory and counts them. chosen: names of files and directories; empty: all.
class table_directory {
 public:
  table_directory(const std::string& top, std::vector<std::string> chosen) : files_(top), chosen_(std::move(chosen)) {}

  unsigned count() const { return count_; }

  void put(const std::string& name, const kit::bytes& image) {
    names_ += (names_.empty() ? "" : ", ") + name;
    if (!is_chosen(name)) return;
    output_file& file = files_.add(name);
    file.write(image.data(), image.size());
    file.close();
    ++count_;
  }
  void keep() {
    for (const std::string& name : chosen_) {
      if (found_.count(name) == 0) throw user_error("there is no table \"" + name + "\"; there are " + names_);
    }
    files_.keep();
  }

 private:
  bool is_chosen(const std::string& name) {
    bool chosen = chosen_.empty();
    for (const std::string& wanted : chosen_) {
      if (name != wanted && name.rfind(wanted + "/", 0) != 0) continue;
      found_.insert(wanted);
      chosen = true;
    }
    return chosen;
  }

  output_set files_;
  std::vector<std::string> chosen_;
  std::set<std::string> found_;  // of those that are chosen
  std::string names_;            // of all that there are
  unsigned count_ = 0;
};

kit::bytes image_of(const kit::curve& tone) { return kit::curve_image{.curves = {tone}}.encode(); }

kit::bytes saturated_colors() {
  return kit::color_table{.grid = kit::matrix_grid(kit::saturation_matrix(1.25))}.encode();
}

// Colour and error diffusion tables for pages in one ink, four or six.
void put_inks(table_directory& to) {
  const auto levels = [](unsigned inks) {
    return kit::ed_parameters(inks, 2, kit::ed_modulation(kit::default_error_filter, 2)).encode();
  };
  to.put("inks.csc2", kit::ink_table(4).encode());
  to.put("levels.edpr", levels(4));
  to.put(std::string(kit::default_error_filter) + ".edtb", kit::ed_distribution().encode());

  to.put("six/inks.csc2", kit::ink_table(6).encode());
  to.put("six/levels.edpr", levels(6));
  to.put("six/to-split.csc2", kit::split_ink_table().encode());
  to.put("six/split.1dlt", kit::split_curves().encode());

  to.put("one/gray.csc1", kit::subtype_table("gray"));
  to.put("one/black.1dlt", kit::black_ink_curve().encode());
  to.put("one/levels.edpr", levels(1));
}

void put_colors(table_directory& to) {
  to.put("colors/saturated.csc1", saturated_colors());
  for (const char* const rule : {"thrh", "gray", "blck", "sold"}) {
    to.put("colors/" + std::string(rule) + ".csc1", kit::subtype_table(rule));
  }
}

void put_halftones(table_directory& to) {
  for (const unsigned levels : {3u, 4u, 16u}) {
    const std::string name = "levels/" + std::to_string(levels);
    to.put(name + ".edpr",
           kit::ed_parameters(4, levels, kit::ed_modulation(kit::default_error_filter, levels)).encode());
    to.put(name + ".edtb", kit::ed_distribution(kit::default_error_filter, levels).encode());
  }
  for (const kit::error_filter& filter : kit::error_filters) {
    to.put("filters/" + std::string(filter.name) + ".edtb", kit::distribution_table(filter).encode());
  }
  for (const unsigned across : {1u, 2u, 4u}) {
    for (unsigned down = 1; down <= 4; ++down) {
      if (across * down == 1) continue;
      const unsigned levels = across * down + 1;
      to.put("cells/" + std::to_string(across) + "x" + std::to_string(down) + ".edpr",
             kit::cell_parameters(4, across, down, levels, kit::ed_modulation(kit::default_error_filter, levels))
                 .encode());
    }
  }
  for (const std::string_view matrix : kit::matrix_names) {
    to.put("dither/" + std::string(matrix) + ".dith", kit::dither_parameters(4, 2, matrix).encode());
  }
}

void put_curves(table_directory& to) {
  to.put("curves/lighter.1dlt", image_of(kit::gamma_curve(1.2)));
  to.put("curves/darker.1dlt", image_of(kit::gamma_curve(1 / 1.2)));
  to.put("curves/contrast.1dlt", image_of(kit::s_curve(0.5)));
  to.put("curves/dot-gain-15.1dlt", image_of(kit::dot_gain_compensation(0.15)));
  to.put("curves/ink-limit-80.1dlt", image_of(kit::ink_limiting(0.8)));
}

// A blob of each type, with tags of family H. The tone curves are one step darker, neutral, one step brighter.
void put_blobs(table_directory& to) {
  const auto put = [&](const char* name, const char* type, std::vector<kit::blob_entry> entries) {
    to.put(std::string("blobs/") + name, kit::blob{.type = type, .entries = std::move(entries)}.encode());
  };
  const auto levels = [](unsigned inks) { return kit::ed_parameters(inks, 2).encode(); };
  const auto ranks = [](std::string_view matrix) { return kit::dither_parameters(4, 2, matrix).encode(); };
  const kit::bytes darker = image_of(kit::gamma_curve(1 / 1.2)), straight = image_of(kit::identity_curve()),
                   brighter = image_of(kit::gamma_curve(1.2));
  put("colors.ctsi", "CS1T", {{"HC", kit::subtype_table("thrh")}, {"HP", saturated_colors()}});
  put("inks.ctsi", "CS2T", {{"HN", kit::ink_table(4).encode()}, {"HNP", kit::ink_table(6).encode()}});
  put("levels.ctsi", "HATT", {{"HH1", levels(1)}, {"HH4", levels(4)}, {"HH6", levels(6)}});
  put("tones.ctsi", "INGM", {{"HB-1", darker}, {"HB00", straight}, {"HB+1", brighter}});
  put("older-tones.ctsi", "INGM", {{"HD1", darker}, {"HT", straight}, {"HB1", brighter}});
  put("ink-tones.ctsi", "OTGM", {{"HN", image_of(kit::dot_gain_compensation(0.15))}});
  put("ranks.ctsi", "HRKT", {{"HR00", ranks("blue-noise")}, {"HR+1", ranks("screens")}});
}

struct tables_arguments {
  std::string directory;
  std::vector<std::string> names;
};

void write_tables(const tables_arguments& arguments) {
  table_directory to(arguments.directory, arguments.names);
  put_inks(to);
  put_colors(to);
  put_halftones(to);
  put_curves(to);
  put_blobs(to);
  to.keep();
  std::printf("%u tables: %s\n", to.count(), printable(arguments.directory).c_str());
}

}  // namespace

void add_tables_command(CLI::App& app) {
  const auto arguments = std::make_shared<tables_arguments>();
  CLI::App* const command = app.add_subcommand("tables", "Writes the kit's tables as files, to test a driver with");
  command->add_option("names", arguments->names, "only these, or those in these directories")
      ->type_name("NAME")
      ->check(not_empty);
  command->add_option("-o,--output", arguments->directory, "directory for the files")
      ->type_name("DIR")
      ->check(not_empty)
      ->required();
  command->footer(help_footer({"vrk tables -o t/", "vrk tables -o t/ inks.csc2 dither"}));
  command->callback([arguments] { write_tables(*arguments); });
}

}  // namespace vrk::tool
