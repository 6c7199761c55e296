#include "kit/tone_curves.h"

#include <vector>

namespace vrk::kit {

curve identity_curve() {
  return sampled_curve([](double x) { return x; });
}

curve gamma_curve(double gamma) {
  return sampled_curve([&](double x) { return std::pow(x, 1 / gamma); });
}

curve s_curve(double strength) {
  return sampled_curve([&](double x) { return x + strength * (x * x * (3 - 2 * x) - x); });
}

double tone_before_gain(double shown, double gain) {
  // The lesser root a of a + 4 * gain * a * (1 - a) = shown, in the form that also holds for a gain of 0.
  const double b = 1 + 4 * gain;
  return 2 * shown / (b + std::sqrt(b * b - 16 * gain * shown));
}

curve dot_gain_compensation(double gain) {
  return sampled_curve([&](double x) { return tone_before_gain(x, gain); });
}

curve ink_limiting(double limit) {
  return sampled_curve([&](double x) { return limit * x; });
}

curve curve_through(std::span<const control_point> points) {
  if (points.empty()) return identity_curve();
  // Slope at every point: a harmonic mean of the slopes of the two segments beside it, in which the shorter one has
  // more weight; 0 where their signs differ. At both ends it is the slope of the only segment.
  const auto width = [&](std::size_t i) { return points[i + 1].in - points[i].in; };
  const auto secant = [&](std::size_t i) { return (points[i + 1].out - points[i].out) / width(i); };
  const std::size_t last = points.size() - 1;
  std::vector<double> slope(points.size());
  for (std::size_t i = 1; i < last; ++i) {
    const double before = secant(i - 1), after = secant(i);
    const double part = (width(i - 1) + 2 * width(i)) / (3 * (width(i - 1) + width(i)));
    if (before * after > 0) slope[i] = before * after / (part * after + (1 - part) * before);
  }
  if (last > 0) {
    slope[0] = secant(0);
    slope[last] = secant(last - 1);
  }
  return sampled_curve([&](double x) {
    if (x <= points.front().in) return points.front().out;
    if (x >= points.back().in) return points.back().out;
    std::size_t i = 0;
    while (x >= points[i + 1].in) ++i;
    const double h = width(i), t = (x - points[i].in) / h, u = 1 - t;  // cubic Hermite
    return points[i].out * u * u * (1 + 2 * t) + points[i + 1].out * t * t * (1 + 2 * u) +
           h * t * u * (slope[i] * u - slope[i + 1] * t);
  });
}

curve chained(const curve& first, const curve& second) {
  curve both{};
  for (std::size_t i = 0; i < both.size(); ++i) {
    const unsigned at = first[i] * 1023u;  // in units of 1 / 65535 of an entry
    const unsigned entry = at / 65535, part = at % 65535;
    const std::size_t next = std::min<std::size_t>(entry + 1, second.size() - 1);
    both[i] = std::uint16_t(
        (std::uint64_t(second[entry]) * (65535 - part) + std::uint64_t(second[next]) * part + 32767) / 65535);
  }
  return both;
}

}  // namespace vrk::kit
