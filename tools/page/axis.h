// One side of a picture that is resampled: which of its pixels count for a pixel of the result.
#pragma once

#include <algorithm>
#include <cmath>

namespace vrk::tool {

inline constexpr double lanczos_lobes = 3;

struct pixel_range {
  unsigned first, end;  // end is the first pixel behind it
};

struct axis {
  unsigned pixels;       // of the picture
  double start, length;  // what the result shows, in pixels of the picture
  unsigned result;       // pixels of the result

  // Pixels of the picture for one of the result, which is also how much wider than usual the filter is above 1.
  double step() const { return length / result; }
  double stretch() const { return std::max(1.0, step()); }

  // The centre of a pixel of the result, in pixels of the picture whose centres are whole numbers.
  double centre(unsigned i) const { return start + (i + 0.5) * step() - 0.5; }

  // The pixels under the middle lobe of the filter, and under all of it (one more each way, for its rounding).
  pixel_range under_middle(unsigned i) const { return inside(centre(i) - stretch(), centre(i) + stretch()); }
  pixel_range under_filter(unsigned i) const {
    const double reach = lanczos_lobes * stretch() + 1;
    return inside(centre(i) - reach, centre(i) + reach);
  }
  // Of so many pixels of the result, no filter reaches over more pixels of the picture.
  unsigned longest_reach(unsigned result_pixels) const {
    const double most = (result_pixels - 1) * step() + 2 * (lanczos_lobes * stretch() + 1) + 1;
    return unsigned(std::min(most, double(pixels)));
  }

 private:
  // The pixels between two places, themselves excluded.
  pixel_range inside(double from, double to) const {
    const auto clamped = [this](double at) { return unsigned(std::clamp(at, 0.0, double(pixels))); };
    return {clamped(std::floor(from) + 1), clamped(std::ceil(to))};
  }
};

}  // namespace vrk::tool
