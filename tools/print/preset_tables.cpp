#include "tools/print/preset_tables.h"

#include "kit/inspect.h"
#include "kit/presets.h"
#include "tools/made_grids/made_grids.h"
#include "tools/print/curve_argument.h"

namespace vrk::tool {
namespace {

std::string filter_of(const dot_options& options) {
  return options.filter.empty() ? std::string(kit::default_error_filter) : options.filter;
}

unsigned levels_up_to(unsigned most, unsigned usual, const dot_options& options, const char* of) {
  const unsigned levels = options.levels.value_or(usual);
  if (levels > most) throw usage_error("--levels: " + std::string(of) + " has 2 to " + std::to_string(most));
  return levels;
}

// Of an error filter in the user's own table nothing is known.
kit::modulation noise_of(const dot_options& options, unsigned levels, bool own_filter) {
  if (options.modulation == "none") return kit::no_modulation();
  if (options.modulation == "strong") return kit::strong_noise_for(levels);
  if (options.modulation == "noise" || own_filter) return kit::fine_noise_for(levels);
  return kit::ed_modulation(filter_of(options), levels);
}

// Levels, and cells where they are asked for.
kit::edpr_table error_diffusion_parameters(const dot_options& options, unsigned planes, bool own_filter) {
  const auto [x, y] = options.cells.value_or(dot_scale{});
  const unsigned dots = x * y;
  const unsigned levels = options.cells ? levels_up_to(dots + 1, dots + 1, options, "a cell")
                                        : levels_up_to(16, 2, options, "error diffusion");
  const kit::modulation noise = noise_of(options, levels, own_filter);
  return options.cells ? kit::cell_parameters(planes, x, y, levels, noise) : kit::ed_parameters(planes, levels, noise);
}

table dither_parameters(const dot_options& options, unsigned planes, bool samples16) {
  const std::string matrix = options.matrix.empty() ? "blue-noise" : options.matrix;
  const unsigned levels = levels_up_to(255, 2, options, "the dither");
  return {"the kit's matrix " + matrix, kit::dither_parameters(planes, levels, matrix, samples16).encode()};
}

// Of any plane; 2 for tables that the library refuses.
unsigned most_levels(const kit::bytes& parameters) {
  std::size_t most = 2;
  for (const auto& values : kit::ed_level_values(parameters)) most = std::max(most, values.size());
  return unsigned(most);
}

}  // namespace

unsigned choose_ink_tables(const ink_options& options, print_tables& tables) {
  unsigned inks = options.converted();
  if (tables.ink) {
    const unsigned made = kit::inks_made(tables.ink->image).value_or(inks);
    if ((options.count || options.split) && inks != made) {
      refuse(*tables.ink, "makes " + std::to_string(made) + " inks, expected " + std::to_string(inks) +
                              (options.split ? " for --split" : " by --inks"));
    }
    inks = made;
  } else if (inks == 1) {
    tables.ink = {"the kit's tone curve", kit::black_ink_curve().encode()};
  } else {
    const kit::color_table made{.grid = options.split ? made_split_ink_grid() : made_ink_grid(inks)};
    tables.ink = {"the kit's colour table", made.encode()};
  }
  if (inks == 1 && !(tables.rgb && kit::leaves_one_sample(tables.rgb->image))) {
    tables.gray = {"the kit's gray table", kit::subtype_table("gray")};
  }
  return inks;
}

unsigned choose_plane_curves(bool split, unsigned inks, plane_curves& post) {
  if (split) post.main = {"the kit's split into six inks", kit::split_curves().encode()};
  if (post.main && inks > 1 && kit::curve_count(post.main->image) == 1) {  // the same for every plane
    post.main->image = kit::curve_image{.curves = std::vector<kit::curve>(inks, only_curve(*post.main))}.encode();
  }
  const unsigned planes = planes_made(post, inks);
  for (std::size_t p = planes; p < post.planes.size(); ++p) {
    if (post.planes[p]) {
      refuse(*post.planes[p], "belongs to plane " + std::string(plane_names[p]) + ", which a print in " +
                                  std::to_string(planes) + " inks does not have");
    }
  }
  return planes;
}

void choose_halftone_tables(const dot_options& options, unsigned planes, bool samples16, print_tables& tables) {
  if (options.dithers(tables.dither.has_value())) {
    if (!tables.dither) tables.dither = dither_parameters(options, planes, samples16);
    return;
  }
  if (!tables.parameters) {
    tables.parameters = {"the kit's levels",
                         error_diffusion_parameters(options, planes, tables.distribution.has_value()).encode()};
  }
  if (!tables.distribution) {
    const std::string filter = filter_of(options);
    const unsigned levels = most_levels(tables.parameters->image);
    tables.distribution = {"the kit's filter " + filter, kit::ed_distribution(filter, levels).encode()};
  }
}

}  // namespace vrk::tool
