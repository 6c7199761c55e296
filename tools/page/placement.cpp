#include "tools/page/placement.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// A picture that has been turned: pixels, and millimetres on paper.
struct turned_picture {
  unsigned width, height;
  double across, down;
};

turned_picture turn(const placed_picture& picture, resolution dpi, orientation by) {
  turned_picture seen{picture.width, picture.height, picture.width / dpi.x * mm_per_inch,
                      picture.height / dpi.y * mm_per_inch};
  if (by.exchanged) {
    std::swap(seen.width, seen.height);
    std::swap(seen.across, seen.down);
  }
  return seen;
}

bool lies_across(double width, double height, const paper_size& paper) {
  return (width > height && paper.width < paper.height) || (width < height && paper.width > paper.height);
}

unsigned pixels(double mm, double dpi) { return unsigned(std::max(1.0, std::round(mm / mm_per_inch * dpi))); }

void check_length(double mm, const std::string& name) {
  constexpr double shortest = 0.01;  // mm; a pixel alone may be as small
  if (mm >= shortest && mm <= longest_paper) return;
  char text[120];
  std::snprintf(text, sizeof text,
                ": would be %.4g m long on paper by its own resolution, expected %g to %g m: give --size", mm / 1000,
                shortest / 1000, longest_paper / 1000);
  throw user_error(name + text);
}

}  // namespace

placement place(const placed_picture& picture, const page_options& options, const std::string& name) {
  const resolution dpi = options.dpi.value_or(usual_dpi);
  const double finer = std::max(dpi.x, dpi.y);
  const resolution own = picture.dpi.value_or(resolution{finer, finer});

  placement to{};
  if (!options.as_stored) to.turn = picture.seen;
  turned_picture seen = turn(picture, own, to.turn);
  const bool across = options.paper && lies_across(seen.across, seen.down, *options.paper);
  for (unsigned turns = options.quarter_turns.value_or(across ? 1 : 0); turns != 0; --turns) to.turn = to.turn.turned();
  seen = turn(picture, own, to.turn);
  if (!options.paper && picture.dpi) check_length(std::max(seen.across, seen.down), name);

  const paper_size paper = options.paper.value_or(paper_size{seen.across, seen.down});
  to.page_width = pixels(paper.width, dpi.x);
  to.page_height = pixels(paper.height, dpi.y);
  const double fit_across = paper.width / seen.across, fit_down = paper.height / seen.down;
  const double scale = options.fill ? std::max(fit_across, fit_down) : std::min(fit_across, fit_down);
  const double shown_across = std::min(1.0, fit_across / scale), shown_down = std::min(1.0, fit_down / scale);
  to.width = std::min(pixels(seen.across * scale, dpi.x), to.page_width);
  to.height = std::min(pixels(seen.down * scale, dpi.y), to.page_height);
  to.left = (to.page_width - to.width) / 2;
  to.top = (to.page_height - to.height) / 2;
  to.part_width = seen.width * shown_across;
  to.part_height = seen.height * shown_down;
  to.part_left = (seen.width - to.part_width) / 2;
  to.part_top = (seen.height - to.part_height) / 2;
  to.resampled = to.part_width != to.width || to.part_height != to.height || to.part_width != seen.width ||
                 to.part_height != seen.height;
  return to;
}

}  // namespace vrk::tool
