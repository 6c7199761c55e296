// Tone curves for pre- and post-processing.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>

#include "kit/curve_image.h"

namespace vrk::kit {

// The curve of tone(x), 0 ... 1 in and out; results outside are clipped.
template <class Tone>
curve sampled_curve(Tone tone) {
  curve c{};
  for (std::size_t i = 0; i < c.size(); ++i) {
    const double level = std::clamp(tone(double(i) / double(c.size() - 1)), 0.0, 1.0);
    c[i] = std::uint16_t(std::lround(65535 * level));
  }
  return c;
}

curve identity_curve();

// x to the power 1 / gamma: above 1 it raises the middle.
curve gamma_curve(double gamma);

// More contrast in the middle, less at both ends. strength: 0 (identity) ... 1; below 0 the opposite.
curve s_curve(double strength);

// Compensates dot gain: the curve maps a wanted coverage to the coverage a for which paper shows it, where dots gain
// 4 * gain * a * (1 - a) (Yule and Nielsen's gain, simplified to a parabola). gain: at half tone, 0 ... 0.25.
curve dot_gain_compensation(double gain);
double tone_before_gain(double shown, double gain);  // one value of it, 0 ... 1

// Scales all tones so that full tone becomes `limit`, 0 ... 1.
curve ink_limiting(double limit);

// A smooth curve through control points in rising order of `in` (0 ... 1), constant before the first and after the
// last. Between two points it is monotone: it never overshoots them. F. N. Fritsch, J. Butland, A method for
// constructing local monotone piecewise cubic interpolants, SIAM 1984.
struct control_point {
  double in, out;
};
curve curve_through(std::span<const control_point> points);

// The curve that applies `first`, then `second`.
curve chained(const curve& first, const curve& second);

}  // namespace vrk::kit
