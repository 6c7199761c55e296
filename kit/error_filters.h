// Error filters of the literature that fit the five neighbours of the error diffusion kernels.
#pragma once

#include <array>
#include <string_view>

#include "kit/ed_tables.h"

namespace vrk::kit {

// Shares of the quantisation error, out of `divisor`, in scan direction (x is the pixel itself, - a pixel not reached):
//
//     -     -     x   [0]   [1]        this line: next, second next
//    [2]   [3]   [4]                   next line: two back, one back, below
//
// No neighbour lies ahead on the next line, because the next line is scanned the other way round. Filters that have one
// there do not fit; those marked "folded" are adaptations, which move its share to the neighbour that mirrors it.
struct error_filter {
  std::string_view name;
  std::array<int, 5> shares;
  int divisor;
  std::string_view source;
  bool lossy = false;  // the shares do not add up to the divisor
};

inline constexpr std::array error_filters{
    error_filter{"fan", {7, 0, 1, 3, 5}, 16, "Z. Fan, A simple modification of error diffusion weights, IS&T 1992"},
    error_filter{"shiau-fan",
                 {4, 0, 1, 1, 2},
                 8,
                 "J. Shiau, Z. Fan, A set of easily implementable coefficients in error diffusion with reduced worm "
                 "artifacts, SPIE 2658, 1996: the set with four coefficients"},
    error_filter{"sierra-lite", {2, 0, 0, 1, 1}, 4, "F. Sierra, 1990: \"Filter Lite\""},
    error_filter{"floyd-steinberg",
                 {7, 0, 0, 4, 5},
                 16,
                 "folded from R. Floyd, L. Steinberg, An adaptive algorithm for spatial gray scale, SID 1976"},
    error_filter{"burkes", {8, 4, 4, 8, 8}, 32, "folded from D. Burkes, Presentation of the Burkes error filter, 1988"},
    error_filter{"sierra-two-row", {4, 3, 2, 4, 3}, 16, "folded from F. Sierra, 1990: the filter of two rows"},
    error_filter{"line", {1, 0, 0, 0, 0}, 1, "all to the next pixel: each line on its own"},
    error_filter{"none", {0, 0, 0, 0, 0}, 1, "plain thresholds, no diffusion", true},
};

// Null for a name that the list does not hold.
const error_filter* find_error_filter(std::string_view name);

// The distribution of a filter: one row for each quantisation error -255 ... 255. Its amounts are the shares rounded to
// whole numbers so that they add up to the quantisation error exactly (a lossy filter's to what its shares make of it),
// and the row of -e is that of e, negated.
edtb_table distribution_table(const error_filter& filter);

}  // namespace vrk::kit
