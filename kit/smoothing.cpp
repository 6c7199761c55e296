#include "kit/smoothing.h"

#include <array>
#include <cmath>
#include <limits>

namespace vrk::kit {
namespace {

// A symmetric matrix with two diagonals beside the main one, or its factors L and D of L D L'.
struct five_diagonals {
  std::vector<double> main, first, second;  // entry i of the others is beside entry i of the main one, below it

  explicit five_diagonals(std::size_t n) : main(n), first(n), second(n) {}
  std::size_t size() const { return main.size(); }
};

// The matrix is positive definite.
void factorise(five_diagonals& a) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (i >= 2) a.main[i] -= a.main[i - 2] * a.second[i - 2] * a.second[i - 2];
    if (i >= 1) {
      a.main[i] -= a.main[i - 1] * a.first[i - 1] * a.first[i - 1];
      a.first[i] -= a.main[i - 1] * a.first[i - 1] * a.second[i - 1];
    }
    a.first[i] /= a.main[i];
    a.second[i] /= a.main[i];
  }
}

void solve(const five_diagonals& factors, std::vector<double>& x) {
  const std::size_t n = factors.size();
  for (std::size_t i = 0; i < n; ++i) {
    if (i >= 1) x[i] -= factors.first[i - 1] * x[i - 1];
    if (i >= 2) x[i] -= factors.second[i - 2] * x[i - 2];
  }
  for (std::size_t i = 0; i < n; ++i) x[i] /= factors.main[i];
  for (std::size_t i = n; i-- > 0;) {
    if (i + 1 < n) x[i] -= factors.first[i] * x[i + 1];
    if (i + 2 < n) x[i] -= factors.second[i] * x[i + 2];
  }
}

// Lukas' parameter: without it (at 1) now and then a spline through all points wins, noise and all.
constexpr double robust = 0.4;

// Names of the book: the second derivatives at the inner points solve (R + smoothness Q'Q) g = Q'y, with weights.
class spline {
 public:
  explicit spline(std::span<const measured_point> points) : points_(points), r_(points.size() - 2), q_(r_.size()) {
    const auto width = [&](std::size_t i) { return points[i + 1].at - points[i].at; };
    for (std::size_t i = 0; i < r_.size(); ++i) {
      const double before = width(i), after = width(i + 1);
      r_.main[i] = (before + after) / 3;
      if (i + 1 < r_.size()) r_.first[i] = after / 6;
      q_[i] = {1 / before, -1 / before - 1 / after, 1 / after};
    }
  }

  struct fit {
    std::vector<double> values;
    double score;  // of the cross-validation: the lower the better
  };
  fit with(double smoothness) const {
    five_diagonals factors = r_;
    for (std::size_t i = 0; i < q_.size(); ++i) {
      factors.main[i] += smoothness * product(i, i);
      if (i + 1 < q_.size()) factors.first[i] += smoothness * product(i, i + 1);
      if (i + 2 < q_.size()) factors.second[i] += smoothness * product(i, i + 2);
    }
    factorise(factors);
    std::vector<double> g(q_.size());
    for (std::size_t i = 0; i < q_.size(); ++i) {
      for (std::size_t k = 0; k < 3; ++k) g[i] += q_[i][k] * points_[i + k].value;
    }
    solve(factors, g);

    std::vector<double> left(points_.size());
    for (std::size_t i = 0; i < q_.size(); ++i) {
      for (std::size_t k = 0; k < 3; ++k) left[i + k] += smoothness * q_[i][k] * g[i] / points_[i + k].weight;
    }
    double squares = 0;
    fit result{};
    for (std::size_t i = 0; i < points_.size(); ++i) {
      squares += points_[i].weight * left[i] * left[i];
      result.values.push_back(points_[i].value - left[i]);
    }
    const auto [left_over, square] = traces_of(factors);
    result.score = squares / (left_over * left_over) * (robust + (1 - robust) * square / double(points_.size()));
    return result;
  }

 private:
  // An entry of Q'Q, weighted.
  double product(std::size_t i, std::size_t j) const {
    double sum = 0;
    for (std::size_t k = j - i; k < 3; ++k) sum += q_[i][k] * q_[j][k - (j - i)] / points_[i + k].weight;
    return sum;
  }

  // The traces of 1 - S and of S^2, where S is what makes the spline's values of the points' values: 1 - S and
  // 1 - (R + ...)^-1 R, of which the columns are computed here, have the same eigenvalues, but for two of 0.
  struct traces {
    double left = 0, square = 0;
  };
  traces traces_of(const five_diagonals& factors) const {
    const std::size_t n = r_.size();
    std::vector<std::vector<double>> columns(n, std::vector<double>(n));
    traces result;
    for (std::size_t i = 0; i < n; ++i) {
      std::vector<double>& column = columns[i];
      column[i] = r_.main[i];
      if (i >= 1) column[i - 1] = r_.first[i - 1];
      if (i + 1 < n) column[i + 1] = r_.first[i];
      solve(factors, column);
      result.left += 1 - column[i];
    }
    result.square = 2;
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t k = 0; k < n; ++k) result.square += columns[i][k] * columns[k][i];
    }
    return result;
  }

  std::span<const measured_point> points_;
  five_diagonals r_;
  std::vector<std::array<double, 3>> q_;
};

}  // namespace

std::vector<double> smooth_values(std::span<const measured_point> points) {
  std::vector<double> best;
  for (const measured_point& p : points) best.push_back(p.value);
  if (points.size() < 4) return best;
  const spline through(points);
  const double length = points.back().at - points.front().at;
  double lowest = std::numeric_limits<double>::infinity();
  for (double exponent = -9; exponent <= 1; exponent += 0.25) {  // from no effect to nearly a straight line
    spline::fit next = through.with(std::pow(10, exponent) * length * length * length);
    if (!(next.score < lowest)) continue;
    lowest = next.score;
    best = std::move(next.values);
  }
  return best;
}

std::vector<measured_point> rising_points(std::span<const measured_point> points) {
  std::vector<measured_point> rising;
  for (measured_point p : points) {
    while (!rising.empty() && rising.back().value >= p.value) {
      const measured_point& other = rising.back();
      const double weight = p.weight + other.weight;
      const auto mean = [&](double a, double b) { return (a * p.weight + b * other.weight) / weight; };
      p = {mean(p.at, other.at), mean(p.value, other.value), weight};
      rising.pop_back();
    }
    rising.push_back(p);
  }
  if (rising.size() < 2) return rising;
  rising.front().at = points.front().at;
  rising.back().at = points.back().at;
  return rising;
}

}  // namespace vrk::kit
