// Measures of halftones on photographs: those of the kit, and planes that other programs made.
#pragma once

#include <array>
#include <string>

#include "tools/review/halftone_choices.h"
#include "tools/review/ink_picture.h"
#include "tools/review/measure/overlay.h"
#include "tools/review/measure/spectrum.h"
#include "tools/review/measure/visible_noise.h"
#include "tools/review/report_options.h"

namespace vrk::tool {

struct photograph {
  std::string name;  // of the file, without directories and ending
  ink_picture inks;
  window part;                   // that is measured: the middle, if the picture is large
  std::vector<ink_plane> asked;  // of the part, for every ink
};

// Those of the options, or the built-in one if there are none. Two of one name are refused.
std::vector<photograph> read_photographs(const report_options& options);

// What one halftone makes of one photograph.
struct photograph_figures {
  std::array<std::optional<visible_noise>, 6> noise{};  // of every plane that is there and has ink
  std::optional<overlay_error> overlay{};               // if all planes are there
  direction lines{};                                    // the strongest one of all planes

  visible_noise mean_noise() const;  // of the planes
};

// dots: a plane for every ink, or empty where it is not there.
photograph_figures measure_photograph(const photograph& of, const std::vector<ink_plane>& dots, const viewing& view);

// A row of the table.
struct photograph_row {
  std::string name, kind;                                  // "error filter", "threshold matrix", "other program"
  std::vector<std::optional<photograph_figures>> figures;  // of every photograph

  photograph_figures mean() const;  // of the photographs that are there; the worst of the directions
};

// Those of other programs come first.
std::vector<photograph_row> measure_photographs(const std::vector<photograph>& photographs,
                                                const std::vector<halftone_choice>& choices,
                                                const report_options& options);

}  // namespace vrk::tool
