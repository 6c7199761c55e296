#include "tools/calibrate/ink_calibration.h"

#include <cmath>

#include "tools/pipeline/halftone.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

double lightness_drop(const measured_step& paper, const measured_step& step) { return paper.lab[0] - step.lab[0]; }

double distance(const measured_step& paper, const measured_step& step) {
  return std::hypot(step.lab[0] - paper.lab[0], step.lab[1] - paper.lab[1], step.lab[2] - paper.lab[2]);
}

// The light that an ink takes away most.
double absorbed_light(const measured_step& step, std::size_t plane) {
  const auto& [x, y, z] = step.xyz;
  const std::string_view ink = plane_names[plane];
  if (ink == "c" || ink == "lc") return x - 0.55 * z;
  return ink == "y" ? z : y;
}

}  // namespace

ink_calibration calibrate_ink(const measured_ramp& ramp, std::size_t plane, std::optional<double> gain,
                              const std::string& name) {
  const measured_step &paper = ramp.front(), &full = ramp.back();
  const bool by_lightness = lightness_drop(paper, full) >= least_lightness_range;
  ink_calibration ink{plane_names[plane], gain ? "%" : by_lightness ? "L*" : "dE", {}, {}};
  const double no_light = absorbed_light(paper, plane) - absorbed_light(full, plane);
  for (const measured_step& step : ramp) {
    const double value = gain           ? 100 * (absorbed_light(paper, plane) - absorbed_light(step, plane)) / no_light
                         : by_lightness ? lightness_drop(paper, step)
                                        : distance(paper, step);
    ink.steps.push_back({step.tone, value, step.patches});
  }
  const auto made = kit::calibrate(ink.steps, gain.value_or(0));
  constexpr double least_distance = 5;  // delta E*ab: less is no ink
  if (!made || distance(paper, full) < least_distance) {
    throw user_error(name + ": " + std::string(ink.plane) +
                     " does not get stronger from paper to full tone, expected a printed ramp of this ink");
  }
  ink.made = *made;
  return ink;
}

ink_calibration::difference ink_calibration::error_at(double asked) const {
  const double aim = made.aim(asked);
  return {kit::shown(steps, asked) - aim, kit::shown(steps, made.tone, asked) - aim};
}

std::vector<double> falling_steps(const ink_calibration& ink) {
  std::vector<double> tones;
  for (std::size_t i = 1; i < ink.steps.size(); ++i) {
    if (ink.steps[i].value <= ink.steps[i - 1].value) tones.push_back(100 * ink.steps[i].at);
  }
  return tones;
}

}  // namespace vrk::tool
