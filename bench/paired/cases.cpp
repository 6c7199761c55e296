#include "bench/paired/cases.h"

#include "kit/level_sets.h"
#include "kit/planes.h"

namespace vrk::bench {
namespace {

kit::edpr_table ed_table(unsigned planes, unsigned levels = 2) {
  return kit::ed_parameters(planes, levels, kit::fine_noise_for(levels));
}

// Two levels, of which the lower one is not paper.
kit::edpr_table ed_table_above_zero() {
  kit::edpr_table table = ed_table(4);
  for (kit::ed_plane& plane : table.planes) {
    if (!plane.level_values.empty()) plane.level_values[0] = 64;
  }
  return table;
}

// One more than the bits of a pixel name.
kit::dither_table three_levels_in_one_bit() {
  kit::dither_table table = kit::dither_parameters(4, 3);
  for (kit::dither_plane& plane : table.planes) plane.bits = 1;
  return table;
}

}  // namespace

const input& photo_input() {
  static const input in{"photo", &photographic()};
  return in;
}
const input& random_input() {
  static const input in{"random", &uniform_random()};
  return in;
}
const input& page_input() {
  static const input in{"page", &page_with_paper(), planes_from::separations};
  return in;
}

const std::vector<work>& grids_of_8_bits() {
  static const std::vector<work> all{conversion_work("grid RGB to RGB, 8-8-8", {}),
                                     conversion_work("grid RGB to 4 inks, 8-8-8", {.channels = 4})};
  return all;
}
const std::vector<work>& grids_of_8_bits_and_6_inks() {
  static const std::vector<work> all{conversion_work("grid RGB to 6 inks, 8-8-8", {.channels = 6})};
  return all;
}
const std::vector<work>& grids_of_12_bits() {
  constexpr std::uint32_t words = VRK_IN16 | VRK_OUT16;
  static const std::vector<work> all{
      conversion_work("grid RGB to RGB, 8-12-8", {.flags = VRK_PREC12}),
      conversion_work("grid RGB to RGB, 16-12-16", {.flags = words}),
      conversion_work("grid RGB to 4 inks, 8-12-8", {.channels = 4, .flags = VRK_PREC12}),
      conversion_work("grid RGB to 4 inks, 16-12-16", {.channels = 4, .flags = words}),
      conversion_work("grid RGB to 6 inks, 8-12-8", {.channels = 6, .flags = VRK_PREC12}),
      conversion_work("grid RGB to 6 inks, 16-12-16", {.channels = 6, .flags = words}),
  };
  return all;
}
const std::vector<work>& gray_works() {
  static const std::vector<work> all{conversion_work("gray to 4 inks, 8-8-8", {.channels = 4, .gray = true}),
                                     conversion_work("gray to 6 inks, 8-8-8", {.channels = 6, .gray = true})};
  return all;
}

const std::array<work, 3>& diffusion_of_four() {
  static const std::array<work, 3> all{diffusion_work("error diffusion of 4 planes, 8-10", 4, VRK_PREC10, ed_table(4)),
                                       diffusion_work("error diffusion of 4 planes, 8-8", 4, 0, ed_table(4)),
                                       diffusion_work("error diffusion of 4 planes, 16-10", 4, VRK_IN16, ed_table(4))};
  return all;
}
const work& diffusion_of_six() {
  static const work only = diffusion_work("error diffusion of 6 planes, 8-10", 6, VRK_PREC10, ed_table(6));
  return only;
}
const std::vector<work>& diffusion_of_one() {
  static const std::vector<work> all{diffusion_work("error diffusion of 1 plane, 8-10", 1, VRK_PREC10, ed_table(1)),
                                     diffusion_work("error diffusion of 1 plane, 8-8", 1, 0, ed_table(1)),
                                     diffusion_work("error diffusion of 1 plane, 16-10", 1, VRK_IN16, ed_table(1))};
  return all;
}

const std::vector<work>& dithers(unsigned bits) {
  static const auto of_bits = [](unsigned count) {
    std::vector<work> all;
    for (const char* const matrix : {"bayer16", "screens", "blue-noise"}) {
      const std::string name = "dither of 4 planes, " + std::to_string(count) + " bit, " + matrix;
      all.push_back(dither_work(name, 4, 0, kit::dither_parameters(4, 1u << count, matrix)));
    }
    return all;
  };
  static const std::vector<work> one = of_bits(1), two = of_bits(2), four = of_bits(4);
  return bits == 1 ? one : bits == 2 ? two : four;
}

const std::vector<work>& width_works() {
  static const std::vector<work> all{
      grids_of_8_bits()[0],        grids_of_8_bits()[1],
      grids_of_12_bits()[1],       gray_works()[0],
      diffusion_of_four()[0],      diffusion_of_four()[1],
      diffusion_of_one()[0],       dithers(1)[0],
      curves_work("curves 4 x 8"), page_work("RGB to 4 packed planes, 8-10"),
  };
  return all;
}

const std::vector<std::pair<work, unsigned>>& hard_cases() {
  static const std::vector<std::pair<work, unsigned>> all = [] {
    std::vector<std::pair<work, unsigned>> cases;
    for (const unsigned channels : {3u, 4u}) {
      const std::string to = channels == 3 ? "RGB to RGB" : "RGB to 4 inks";
      for (const unsigned width : {1u, 7u, 64u, 191u, 193u}) {
        cases.emplace_back(conversion_work("grid " + to + ", 8-8-8", {.channels = channels}), width);
      }
      for (const unsigned layout : {1u, 2u, 3u}) {
        const std::string name = "grid " + to + ", layout " + std::to_string(layout);
        cases.emplace_back(conversion_work(name, {.channels = channels, .layout = layout}), usual_width);
      }
      for (const unsigned points : {9u, 33u}) {
        const std::string name = "grid " + to + ", " + std::to_string(points) + " points an axis";
        cases.emplace_back(conversion_work(name, {.channels = channels, .points = points}), usual_width);
      }
      for (const std::uint32_t flags : {0u, VRK_PREC12}) {
        const std::string name = "grid " + to + (flags == 0 ? ", 8-8-8" : ", 8-12-8") + std::string(", steep axis");
        cases.emplace_back(conversion_work(name, {.channels = channels, .flags = flags, .bounded = false}),
                           usual_width);
      }
    }
    cases.emplace_back(conversion_work("grid RGB to RGB, half of it masked", {.masked = true}), usual_width);
    for (const unsigned width : {1u, 64u, 191u}) {
      cases.emplace_back(diffusion_of_four()[0], width);
      cases.emplace_back(diffusion_of_four()[1], width);
      cases.emplace_back(diffusion_of_one()[0], width);
      cases.emplace_back(dithers(1)[0], width);
    }
    cases.emplace_back(diffusion_work("error diffusion of 4 planes, 4 levels", 4, VRK_PREC10, ed_table(4, 4)),
                       usual_width);
    cases.emplace_back(diffusion_work("error diffusion of 4 planes, 16 levels", 4, VRK_PREC10, ed_table(4, 16)),
                       usual_width);
    cases.emplace_back(
        diffusion_work("error diffusion of 4 planes, level 0 above 0", 4, VRK_PREC10, ed_table_above_zero()),
        usual_width);
    cases.emplace_back(diffusion_work("error diffusion of 4 planes, cells of 2 x 2 dots", 4, VRK_PREC10,
                                      kit::cell_parameters(4, 2, 2, 5, kit::fine_noise_for(5))),
                       usual_width);
    cases.emplace_back(dither_work("dither of 4 planes, 3 levels in 1 bit", 4, 0, three_levels_in_one_bit()),
                       usual_width);
    cases.emplace_back(dither_work("dither of 4 planes, 8 bit", 4, 0, kit::dither_parameters(4, 200)), usual_width);
    cases.emplace_back(
        dither_work("dither of 4 planes, 16-bit input", 4, VRK_IN16, kit::dither_parameters(4, 2, "blue-noise", true)),
        usual_width);
    for (const unsigned width : {1u, 7u, 64u, 191u}) cases.emplace_back(curves_work("curves 4 x 8"), width);
    cases.emplace_back(curves_work("curves 6 x 8", 6), usual_width);
    cases.emplace_back(curves_work("curves 1 x 8", 1), usual_width);
    cases.emplace_back(curves_work("curves 4 x 16", 4, VRK_IN16 | VRK_OUT16), usual_width);
    for (const unsigned width : {1u, 64u, usual_width}) {
      cases.emplace_back(preprocessor_work("pre-processor, composed", VRK_COMPOSE), width);
      cases.emplace_back(preprocessor_work("pre-processor, step by step", 0), width);
    }
    cases.emplace_back(preprocessor_work("pre-processor, 8 to 16 bits", VRK_OUT16), usual_width);
    return cases;
  }();
  return all;
}

}  // namespace vrk::bench
