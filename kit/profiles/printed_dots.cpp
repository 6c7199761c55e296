#include "kit/profiles/printed_dots.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace vrk::profiles {
namespace {

using inks = std::array<double, 6>;  // shares of full ink in plane order
using rgb = std::array<double, 3>;   // linear ROMM RGB, 1 is paper white

// Under D50; sRGB (IEC 61966-2-1) is adapted to it by the Bradford transform.
constexpr double romm_of_xyz[3][3] = {
    {1.345943, -0.255608, -0.051112}, {-0.544599, 1.508167, 0.020535}, {0, 0, 1.211813}};
constexpr double srgb_of_romm[3][3] = {
    {2.034076, -0.727334, -0.306742}, {-0.228813, 1.231730, -0.002917}, {-0.008570, -0.153287, 1.161856}};

samples pixels_of(const std::vector<inks>& printed, unsigned channels) {
  samples pixels;
  for (const inks& each : printed) {
    for (unsigned i = 0; i < channels; ++i) pixels.push_back(std::uint16_t(std::lround(each[i] * 65535)));
  }
  return pixels;
}

std::vector<inks> inks_of(const samples& pixels, unsigned channels) {
  std::vector<inks> printed(pixels.size() / channels);
  for (std::size_t i = 0; i < pixels.size(); ++i) printed[i / channels][i % channels] = pixels[i] / 65535.0;
  return printed;
}

std::vector<rgb> seen(const printed_color& shown, const std::vector<inks>& printed) {
  const samples device = pixels_of(printed, shown.channels());
  std::vector<rgb> colors;
  for (const lab& color : shown.of(device)) {
    const cmsCIELab from{color[0], color[1], color[2]};
    cmsCIEXYZ xyz;
    cmsLab2XYZ(nullptr, &xyz, &from);
    rgb& to = colors.emplace_back();
    for (std::size_t c = 0; c < 3; ++c) {
      const auto& of = romm_of_xyz[c];
      to[c] = std::max(0.0, of[0] * xyz.X + of[1] * xyz.Y + of[2] * xyz.Z);
    }
  }
  return colors;
}

std::vector<inks> full_inks(unsigned count) {
  std::vector<inks> all(std::size_t{1} << count);
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (unsigned p = 0; p < count; ++p) all[i][p] = double(i >> p & 1);
  }
  return all;
}

// A ramp of each ink, and inks at random.
std::vector<inks> inks_to_fit(unsigned count) {
  constexpr unsigned steps = 20, others = 1000;
  std::vector<inks> all;
  for (unsigned p = 0; p < count; ++p) {
    for (unsigned step = 1; step < steps; ++step) all.emplace_back()[p] = double(step) / steps;
  }
  std::mt19937 random;  // with its standard seed
  for (unsigned i = 0; i < others; ++i) {
    inks& any = all.emplace_back();
    for (unsigned p = 0; p < count; ++p) any[p] = double(random()) / double(std::mt19937::max());
  }
  return all;
}

// Dots of different planes lie independently of each other (A. Demichel).
template <class Number>
Number mean_of(std::array<Number, 64> overprints, std::span<const double> shares) {
  for (std::size_t p = shares.size(); p-- > 0;) {
    const std::size_t without = std::size_t{1} << p;
    const auto share = Number(shares[p]);
    for (std::size_t i = 0; i < without; ++i) overprints[i] += share * (overprints[i + without] - overprints[i]);
  }
  return overprints[0];
}

// The n for channel c. dots: of so many planes. Errors count by their cube roots, which are even to the eye.
double fitted_n(std::size_t c, const std::vector<rgb>& overprints, const std::vector<inks>& dots, unsigned planes,
                const std::vector<rgb>& wanted) {
  double best = 1, least = HUGE_VAL;
  for (double root = 1; root > 0.1; root -= 0.01) {
    std::array<double, 64> of_dots{};
    for (std::size_t i = 0; i < overprints.size(); ++i) of_dots[i] = std::pow(overprints[i][c], root);
    double error = 0;
    for (std::size_t i = 0; i < dots.size(); ++i) {
      const double mean = std::pow(mean_of(of_dots, std::span(dots[i]).first(planes)), 1 / root);
      error += std::pow(std::cbrt(mean) - std::cbrt(wanted[i][c]), 2);
    }
    if (error < least) best = 1 / root, least = error;
  }
  return best;
}

// Beer's law: a light ink lets through the cube root of what the full ink lets through.
void add_light_inks(std::vector<rgb>& overprints) {
  constexpr std::size_t cyan = 1 << 1, magenta = 1 << 2, light_cyan = 1 << 4, light_magenta = 1 << 5;
  for (const auto& [light, full] : {std::pair{light_cyan, cyan}, {light_magenta, magenta}}) {
    for (std::size_t below = 0; below < light; ++below) {
      rgb& color = overprints.emplace_back(overprints[below]);
      for (std::size_t c = 0; c < 3; ++c) color[c] *= std::cbrt(overprints[full][c]);
    }
  }
}

}  // namespace

printed_dots::printed_dots(const printed_color& shown, unsigned planes, const dots_of_inks& printed_as) {
  std::vector<rgb> overprints = seen(shown, full_inks(shown.channels()));
  if (planes > shown.channels()) add_light_inks(overprints);
  const std::vector<inks> printed = inks_to_fit(shown.channels());
  const std::vector<inks> dots =
      printed_as ? inks_of(printed_as(pixels_of(printed, shown.channels())), planes) : printed;
  const std::vector<rgb> wanted = seen(shown, printed);
  for (std::size_t c = 0; c < 3; ++c) n_[c] = float(fitted_n(c, overprints, dots, planes, wanted));
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < overprints.size(); ++i) {
      overprints_[c][i] = float(std::pow(overprints[i][c], 1 / n_[c]));
    }
  }
}

printed_dots::roots printed_dots::of(std::span<const double> shares) const {
  return {mean_of(overprints_[0], shares), mean_of(overprints_[1], shares), mean_of(overprints_[2], shares)};
}

std::array<float, 3> printed_dots::light_of(const roots& mean) const {
  std::array<float, 3> light{};
  for (std::size_t c = 0; c < 3; ++c) {
    const float part = std::pow(std::max(mean[c], 0.0F), n_[c]);  // rounding can leave a mean below 0
    for (std::size_t to = 0; to < 3; ++to) light[to] += float(srgb_of_romm[to][c]) * part;
  }
  return light;
}

}  // namespace vrk::profiles
