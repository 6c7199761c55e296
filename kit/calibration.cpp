#include "kit/calibration.h"

#include <cmath>

#include "kit/tone_curves.h"

namespace vrk::kit {

std::optional<calibration> calibrate(std::span<const measured_point> steps, double gain) {
  const std::vector<double> smooth = smooth_values(steps);
  std::vector<measured_point> points(steps.begin(), steps.end());
  for (std::size_t i = 0; i < points.size(); ++i) points[i].value = smooth[i];
  points = rising_points(points);
  if (points.size() < 2) return {};

  const double paper = points.front().value, full = points.back().value;
  std::vector<control_point> inverse;  // the same points, read from what is shown to what prints it
  inverse.reserve(points.size());
  for (const measured_point& p : points) {
    inverse.push_back({tone_before_gain((p.value - paper) / (full - paper), gain), p.at});
  }
  return calibration{curve_through(inverse), paper, full, gain};
}

double shown(std::span<const measured_point> steps, double printed) {
  std::size_t i = 1;
  while (i + 1 < steps.size() && printed > steps[i].at) ++i;
  const measured_point &a = steps[i - 1], &b = steps[i];
  return a.value + (b.value - a.value) * (printed - a.at) / (b.at - a.at);
}

double shown(std::span<const measured_point> steps, const curve& tone, double asked) {
  const double place = asked * double(tone.size() - 1);
  const auto entry = std::size_t(std::min(place, double(tone.size() - 2)));
  return shown(steps, std::lerp(double(tone[entry]), double(tone[entry + 1]), place - double(entry)) / 65535);
}

}  // namespace vrk::kit
