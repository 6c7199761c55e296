#include "preproc/tone_tables.h"

#include <algorithm>
#include <numbers>

#include "base/elementary.h"

namespace vrk {

namespace {

using std::numbers::sqrt2;

// Samples, at evenly spaced x, the diagonal y = x pushed sideways by `displacement`, perpendicular to itself. Walks
// along the diagonal in steps of a thirtieth of the spacing and takes the first point at or beyond each x. The order of
// these operations, running sums included, decides the last digit of the entries.
template <class Displacement>
void curve_sample(Displacement displacement, u32 max, std::span<u16> entries) {
  constexpr double cos45 = 0.7071067812;
  const double dx = 1.0 / double(entries.size() - 1);
  const double du = dx * 0.03333333333333333;
  double u = 0, x = 0;
  for (std::size_t i = 0; i < entries.size(); u += du) {
    const double shift = cos45 * displacement(std::clamp(u, 0.0, 1.0));
    if (u - shift >= x) {
      entries[i++] = u16(std::clamp(u + shift, 0.0, 1.0) * max + 0.5);
      x += dx;
    }
  }
}

}  // namespace

void balance_curve(i32 step, double unit, u32 max, std::span<u16> entries) {
  const double amplitude = step * unit / sqrt2 / (1 - 2 * exp(-5.0));
  const auto displacement = [=](double c) { return amplitude * (1 - exp(-10 * c) - exp(-10 * (1 - c))); };
  curve_sample(displacement, max, entries);
}

void lift_curve(i32 step, std::span<u16> entries) {
  const double amplitude = step * 0.05 / sqrt2;
  const auto displacement = [=](double c) { return amplitude * c * (1 - exp(-4 * (1 - 2 * (c - 0.5)))); };
  curve_sample(displacement, u32(entries.size() - 1), entries);
}

void contrast_curve(double exponent, std::span<u16> entries) {
  const u32 max = u32(entries.size() - 1), half = max / 2;                         // 127 or 511
  const double unit = half == 127 ? 0.007874015748031496 : 0.0019569471624266144;  // 1 / half, the quotient's digits
  for (u32 i = 0; i <= half; ++i) {
    const double bend = half * pow(i * unit, exponent);
    entries[i] = u16(bend);
    entries[max - i] = u16(max - bend);
  }
}

}  // namespace vrk
