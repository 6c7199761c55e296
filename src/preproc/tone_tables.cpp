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
//
// Exponentials are what the walk costs, so most of its points are counted and not computed: about as many as the entry
// before took. Displacements bend one way all along, so the points' x, over the way along the diagonal, is a convex or
// a concave curve, as the amplitude's sign says. Where it lies below the x that is sought at both ends of a skip, and
// rises behind it, it lies below in between: a convex curve under its chord, a concave one because it was rising all
// the time.
template <class Displacement>
void curve_sample(Displacement displacement, u32 max, std::span<u16> entries) {
  constexpr double cos45 = 0.7071067812;
  constexpr double doubt = 1e-9;  // far above what rounding adds up to, far below what a step moves x by
  const double dx = 1.0 / double(entries.size() - 1);
  const double du = dx * 0.03333333333333333;
  struct point {
    double u, shift;  // along the diagonal; what its x loses and its y gains by the displacement
    double x() const { return u - shift; }
  };
  const auto point_at = [&](double u) { return point{u, cos45 * displacement(std::clamp(u, 0.0, 1.0))}; };

  point at = point_at(0);
  double x = 0;
  for (std::size_t i = 0, steps = 0;;) {  // steps: since the entry before
    for (; at.x() < x; ++steps) at = point_at(at.u + du);
    entries[i] = u16(std::clamp(at.u + at.shift, 0.0, 1.0) * max + 0.5);
    if (++i == entries.size()) return;
    x += dx;

    const std::size_t skipped = steps > 2 ? steps - 2 : 0;  // the last of them and the one behind it are computed
    double u = at.u;
    for (std::size_t left = skipped; left != 0; --left) u += du;
    const point last = point_at(u), next = point_at(u + du);
    const bool all_below = next.u <= 1 && at.x() < x - doubt && last.x() < x - doubt && last.x() + doubt < next.x();
    at = all_below ? next : point_at(at.u + du);
    steps = all_below ? skipped + 1 : 1;
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
