// How much ink a surface takes: totals above a limit are brought below it.
#pragma once

#include <cstdint>
#include <span>

namespace vrk::profiles {

// Totals up to a knee stay as they are; those between it and the largest total come down to the limit along a curve
// that leaves the knee with slope 1, so that no edge shows. Black keeps its amount, the other inks give way in
// proportion. Totals in percent, 100 for each ink in full.
class ink_limiter {
 public:
  // limit: above 0. largest: the largest total that comes; totals beyond it get the limit. Without one above the limit
  // nothing changes.
  ink_limiter(double limit, double largest);

  double total_for(double total) const;

  // Inks of one pixel, 16 bits each, black first.
  void apply(std::span<std::uint16_t> inks) const;

 private:
  double limit_, largest_, knee_;
};

// In percent.
double total_of(std::span<const std::uint16_t> inks);

}  // namespace vrk::profiles
