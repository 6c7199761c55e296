// How much faster rows have become, beside what they have to reach.
#include <algorithm>
#include <cstdio>

#include "bench/paired/cases.h"
#include "bench/paired/tables.h"

namespace vrk::bench {
namespace {

std::string text_of(const std::optional<spread>& ratio) {
  if (!ratio) return "";
  char text[60];
  std::snprintf(text, sizeof text, "%.2f (%.2f to %.2f)", ratio->median, ratio->low, ratio->high);
  return text;
}

std::optional<spread> ratio_of(const results& all, const std::string& candidate, const std::string& beside) {
  const result *const one = find(all, candidate), *const other = find(all, beside);
  if (one == nullptr || other == nullptr || one == other) return {};
  return ratios(one->seconds, other->seconds);
}

// A ratio whose quartiles lie on both sides of the bar says neither.
const char* verdict(const std::optional<spread>& photo, const std::optional<spread>& random, double photo_bar,
                    double random_bar) {
  if (!photo || !random) return "";
  if (photo->median >= photo_bar && random->median >= random_bar) return "reached";
  return photo->high >= photo_bar && random->high >= random_bar ? "within spread" : "below";
}

struct bar {
  work of;
  unsigned width;
  rows choice;
  double photo, random;
  bool beside_defined = false;  // the row that stood before had it already
};

std::vector<bar> bars() {
  std::vector<bar> all;
  const auto add = [&all](const work& of, double photo, double random = 0) {
    all.push_back({of, usual_width, rows::chosen, photo, random == 0 ? photo : random});
  };
  const auto add_grid = [&](const work& of, double avx2, double sse41) {
    if (level_of_processor() == cpu_level::avx2) add(of, avx2);
    all.push_back(
        {of, usual_width, level_of_processor() == cpu_level::avx2 ? rows::sse41 : rows::chosen, sse41, sse41});
  };
  for (const work& of : grids_of_8_bits()) add_grid(of, 2, 1.6);
  for (const work& of : grids_of_8_bits_and_6_inks()) add_grid(of, 1.9, 1.5);
  for (const work& of : grids_of_12_bits()) add_grid(of, 1.6, 1.35);
  for (const work& of : gray_works()) all.push_back({of, usual_width, rows::chosen, 3, 3, true});
  const double of_four_planes[] = {1.6, 1.3, 1.5};
  for (std::size_t i = 0; i < 3; ++i) {
    add(diffusion_of_four()[i], of_four_planes[i]);
    all.push_back({diffusion_of_four()[i], 2000, rows::chosen, 1.15, 1.15});
  }
  add(diffusion_of_six(), 1.4);
  for (const work& of : diffusion_of_one()) add(of, 1.6);
  const double of_bits[] = {4, 3, 1.5};
  for (std::size_t bits = 0; bits < 3; ++bits) {
    for (const work& of : dithers(1u << bits)) add(of, of_bits[bits]);
  }
  add(curves_work("curves 4 x 8"), 1.15);
  add(preprocessor_creation_work("pre-processor create"), 3);
  add(page_work("RGB to 4 packed planes, 8-10"), 1.8, 2.2);
  return all;
}

}  // namespace

void print_bars(session& measure, const std::vector<input>& pictures) {
  std::printf("| work, %s | width | level | photo | random | page | bar | |\n|---|---|---|---|---|---|---|---|\n",
              measure.reference() == std::string(before) ? "beside the other build" : "beside the defined rows");
  for (const bar& b : bars()) {
    const char* const beside = b.beside_defined ? name_of(rows::defined) : measure.reference();
    const auto on = [&](const input& in) { return ratio_of(measure.of(b.of, in, b.width), name_of(b.choice), beside); };
    const std::optional<spread> photo = on(photo_input()), random = on(random_input());
    std::optional<spread> separations = on(page_input());
    for (const input& in : pictures) {
      const std::optional<spread> ratio = on(in);
      if (ratio && ratio->median < separations->median) separations = ratio;
    }
    char level[20] = "", bar_text[20];
    if (b.choice != rows::chosen) std::snprintf(level, sizeof level, "%s", name_of(b.choice));
    std::snprintf(bar_text, sizeof bar_text, b.photo == b.random ? "%.3g" : "%.3g, %.3g", b.photo, b.random);
    const std::string name = b.of.name + (b.beside_defined ? ", beside the defined row" : "");
    std::printf("| %s | %u | %s | %s | %s | %s | %s | %s |\n", name.c_str(), b.width, level, text_of(photo).c_str(),
                text_of(random).c_str(), text_of(separations).c_str(), bar_text,
                verdict(photo, random, b.photo, b.random));
    std::fflush(stdout);
  }
}

void print_zeros(session& measure, const std::vector<input>& pictures) {
  std::printf(
      "| error diffusion, speed beside that without samples of 0 | samples of 0 | %s | now | bar | |\n"
      "|---|---|---|---|---|---|\n",
      measure.reference());
  std::vector<input> separated{{"scattered", &photographic(), planes_from::scattered_zeros},
                               page_input(),
                               {"photo", &photographic(), planes_from::separations}};
  separated.insert(separated.end(), pictures.begin(), pictures.end());
  for (const work& of : diffusion_of_four()) {
    for (const input& in : separated) {
      input without = in;
      without.no_zeros = true;
      const auto beside = [&](const char* who) { return measure.between_inputs(of, who, in, without, usual_width); };
      const std::optional<spread> then = beside(measure.reference()), now = beside(name_of(rows::chosen));
      std::printf("| %s, %s | %.0f %% | %s | %s | 1 | %s |\n", of.name.c_str(), in.name.c_str(),
                  100 * share_of_zeros(in), text_of(then).c_str(), text_of(now).c_str(), verdict(now, now, 1, 1));
      std::fflush(stdout);
    }
  }
}

void print_hard_cases(session& measure) {
  std::printf("| what defeats fast rows | width | photo | random | bar | |\n|---|---|---|---|---|---|\n");
  for (const auto& [of, width] : hard_cases()) {
    const auto on = [&](const input& in) {
      return ratio_of(measure.of(of, in, width), name_of(rows::chosen), measure.reference());
    };
    const std::optional<spread> photo = on(photo_input()), random = on(random_input());
    std::printf("| %s | %u | %s | %s | 0.97 | %s |\n", of.name.c_str(), width, text_of(photo).c_str(),
                text_of(random).c_str(), verdict(photo, random, 0.97, 0.97));
    std::fflush(stdout);
  }
}

void print_widths(session& measure) {
  std::printf("| Mpixel/s on the photo, %s to now |", measure.reference());
  for (const unsigned width : widths) std::printf(" %u |", width);
  std::printf("\n|---|---|---|---|---|---|\n");
  for (const work& of : width_works()) {
    std::printf("| %s |", of.name.c_str());
    for (const unsigned width : widths) {
      const results& all = measure.of(of, photo_input(), width);
      const result* const then = find(all, measure.reference());
      std::printf(" %.0f to %.0f |", then == nullptr ? 0 : then->pixel_rate,
                  find(all, name_of(rows::chosen))->pixel_rate);
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}

}  // namespace vrk::bench
