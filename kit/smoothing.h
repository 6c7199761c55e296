// Smooth and rising sequences from measurements.
#pragma once

#include <span>
#include <vector>

namespace vrk::kit {

// A measured value; `at` rises strictly from point to point. weight: how many measurements it is the mean of.
struct measured_point {
  double at, value, weight = 1;
};

// The values of a cubic smoothing spline at the points. How smooth it is follows from the points by robust generalised
// cross-validation: what varies without noise stays as it is. Fewer than four points stay as they are. P. J. Green,
// B. W. Silverman, Nonparametric Regression and Generalized Linear Models, 1994, chapters 2 and 3; M. A. Lukas, Robust
// generalized cross-validation for choosing the regularization parameter, Inverse Problems, 2006.
std::vector<double> smooth_values(std::span<const measured_point> points);

// The nearest rising sequence: neighbours that fall become one point with their mean. The first and the last point
// keep their places. Least squares by pooling adjacent violators: M. Ayer et al., An empirical distribution function
// for sampling with incomplete information, 1955.
std::vector<measured_point> rising_points(std::span<const measured_point> points);

}  // namespace vrk::kit
