#include "kit/profiles/ink_limit.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vrk::profiles {

// The knee lies as far below the limit as the largest total lies above it, where there is room for that.
ink_limiter::ink_limiter(double limit, double largest)
    : limit_(limit), largest_(std::max(limit, largest)), knee_(std::max(0.0, 2 * limit_ - largest_)) {}

double ink_limiter::total_for(double total) const {
  if (total <= knee_ || largest_ <= limit_) return std::min(total, limit_);
  const double room = limit_ - knee_, above = largest_ - knee_;
  const double left = std::max(0.0, 1 - (total - knee_) / above);  // 1 at the knee, 0 at the largest total
  return knee_ + room * (1 - std::pow(left, above / room));
}

void ink_limiter::apply(std::span<std::uint16_t> inks) const {
  const double total = total_of(inks), allowed = total_for(total);
  if (allowed >= total) return;
  const double black = inks[0] / 655.35, kept = std::min(black, allowed);
  const double part = total > black ? (allowed - kept) / (total - black) : 0;
  inks[0] = std::uint16_t(kept < black ? kept * 655.35 : inks[0]);
  for (std::uint16_t& ink : inks.subspan(1)) ink = std::uint16_t(ink * part);  // down, so that the limit holds
}

double total_of(std::span<const std::uint16_t> inks) { return std::accumulate(inks.begin(), inks.end(), 0.0) / 655.35; }

}  // namespace vrk::profiles
