#include "tools/review/measure/eye.h"

#include <vector>

namespace vrk::tool {
namespace {

// Weight and spread in degrees of exp(-(r / spread)^2).
struct blur {
  double weight, spread;
};

transfer sum_of(const std::vector<blur>& blurs, double pixels_per_degree) {
  double all = 0;
  for (const blur& b : blurs) all += b.weight;
  return [blurs, pixels_per_degree, all](double f) {
    double left = 0;
    for (const blur& b : blurs) {
      left += b.weight / all * std::exp(-std::pow(std::numbers::pi * b.spread * f * pixels_per_degree, 2));
    }
    return left;
  };
}

}  // namespace

transfer eye(const viewing& view) {
  constexpr double luminance = 50, c = 0.525, d = 3.91;  // Näsänen's fit, in cycles per degree
  const double decay = view.pixels_per_degree() / (c * std::log(luminance) + d);
  return [decay](double f) { return std::exp(-decay * f); };
}

std::array<transfer, 3> opponent_channels(const viewing& view) {
  const double scale = view.pixels_per_degree();
  return {sum_of({{0.921, 0.0283}, {0.105, 0.133}, {-0.108, 4.336}}, scale),
          sum_of({{0.531, 0.0392}, {0.330, 0.494}}, scale), sum_of({{0.488, 0.0536}, {0.371, 0.386}}, scale)};
}

}  // namespace vrk::tool
