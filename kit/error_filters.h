// Error filters that fit the five neighbours of the error diffusion kernels: those of the literature, and our own.
#pragma once

#include <array>
#include <span>
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
//
// A neighbour may have a negative share, if the next pixel gets more for it. A filter may also spread errors of
// different sizes differently: from one size to the next in its list the shares change evenly.
struct shares_from {
  int error;  // size of a quantisation error of two levels, 1 ... 255
  std::array<int, 5> shares;
};

struct error_filter {
  std::string_view name;
  std::array<int, 5> shares;  // of all errors, or of the smallest
  int divisor;
  std::string_view source;
  bool lossy = false;                        // the shares do not add up to the divisor
  std::span<const shares_from> larger = {};  // shares of larger errors, ascending; the last are for all beyond as well
};

// Found by search (kit/search) up to 128. Larger errors are rare; they send less to the next two pixels, because the
// library's kernels for two levels slow down where that could lead beyond their rows.
inline constexpr std::array smooth_shares{
    shares_from{32, {937, -213, 195, 16, 65}},    shares_from{64, {770, -257, 49, 299, 139}},
    shares_from{96, {792, -231, -69, 116, 392}},  shares_from{128, {861, -230, 13, 361, -5}},
    shares_from{192, {650, -150, 120, 260, 120}}, shares_from{255, {500, -120, 150, 290, 180}},
};

inline constexpr std::array error_filters{
    error_filter{"smooth",
                 {1140, -304, -139, 526, -223},
                 1000,
                 "made by search for the least visible noise in photographs: kit/search",
                 false,
                 smooth_shares},
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

// What the programs use unless another one is asked for.
inline constexpr std::string_view default_error_filter = "smooth";

// Null for a name that the list does not hold.
const error_filter* find_error_filter(std::string_view name);

// The distribution of a filter: one row for each quantisation error -255 ... 255. Its amounts are the shares rounded to
// whole numbers so that they add up to the quantisation error exactly (a lossy filter's to what its shares make of it),
// and the row of -e is that of e, negated. levels: of a dot; with more of them, errors are smaller in proportion.
edtb_table distribution_table(const error_filter& filter, unsigned levels = 2);

}  // namespace vrk::kit
