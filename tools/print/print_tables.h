// The tables of a print: the user's own where given, else the kit's.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/pipeline/stage.h"
#include "tools/pipeline/table.h"
#include "tools/print/dot_colors.h"
#include "tools/print/print_options.h"

namespace vrk::tool {

// In the order of the pipeline. A stage without a table is left out.
struct print_tables {
  tone_settings tone{};               // what the pre-processors do
  std::optional<table> rgb{};         // "csc1" from RGB to RGB
  std::optional<table> gray{};        // "csc1" from RGB to one sample, for one ink
  std::optional<table> ink{};         // "csc2", or a tone curve for one ink; none for a picture that holds inks
  std::optional<double> ink_limit{};  // percent; none where a profile's table or link holds it
  std::shared_ptr<const profiles::color_link> ink_link{};  // from a picture in C, M, Y, K to the printer's inks
  plane_curves post{};                                     // what post-processing does
  std::optional<table> dither{};                           // "dith"; none for error diffusion, which has the other two
  std::optional<table> parameters{};                       // "edpr"
  std::optional<table> distribution{};                     // "edtb"
  dot_colors look{};                                       // of what is printed with them

  std::vector<std::string> files{};  // that the user's tables come from, among other arguments
};

// Those that there are, in the order of the pipeline, by the options of `vrk print` that give such tables.
std::vector<std::pair<std::string, const table*>> named_tables(const print_tables& tables);

// Reads the user's tables, refuses options that contradict each other, and fills up with the kit's tables. Throws
// user_error. picture: the profile of a picture that comes in C, M, Y, K; empty where it has none.
print_tables choose_tables(const print_options& options, line_format source, const table& picture = {});

}  // namespace vrk::tool
