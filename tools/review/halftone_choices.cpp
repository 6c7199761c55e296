#include "tools/review/halftone_choices.h"

#include "kit/error_filters.h"
#include "kit/presets.h"
#include "kit/threshold_matrices.h"

namespace vrk::tool {

std::vector<halftone_choice> halftone_choices() {
  std::vector<halftone_choice> choices;
  for (const kit::error_filter& filter : kit::error_filters) choices.push_back({std::string(filter.name), false});
  for (const std::string_view matrix : kit::matrix_names) choices.push_back({std::string(matrix), true});
  return choices;
}

std::unique_ptr<halftone> make_halftone(const halftone_choice& choice, unsigned planes, unsigned levels, bool noise,
                                        std::uint32_t width, ed_precision precision) {
  if (choice.dither) {
    const bool samples16 = precision == ed_precision::samples16;
    const kit::dither_table table = kit::dither_parameters(planes, levels, choice.name, samples16);
    return make_dither({choice.name, table.encode()}, width, samples16);
  }
  const kit::modulation modulation = noise ? kit::ed_modulation(choice.name, levels) : kit::no_modulation();
  return make_error_diffusion({choice.name, kit::ed_distribution(choice.name, levels).encode()},
                              {"the kit's levels", kit::ed_parameters(planes, levels, modulation).encode()}, width,
                              precision);
}

}  // namespace vrk::tool
