// What the line kernels for two levels look up: the amounts that a quantisation error sends, ready to be added up.
//
// Amounts on their way stand side by side in one word, 16 bits for each entry that they will reach, the nearest one
// lowest. A pixel takes that, the others move down, and its own amounts are added. So that no entry borrows from the
// next, all amounts are raised until none is negative; what a sum was raised by is taken off where it arrives.
#pragma once

#include <type_traits>

#include "base/byte_view.h"
#include "base/ref.h"
#include "halftone/ed/ed_tables.h"
#include "halftone/ed/ed_widths.h"

namespace vrk {

struct two_level_tables {
  ref<u8> rows;                // as two_level_rows says; none where the tables do not qualify
  u16 ahead_raised[4];         // by how much sums are raised: for the next pixel up to the fourth next,
  u16 below_raised[4];         // and on the next line for two pixels back, one back, the same column, and nothing
  u16 full[plane_slots];       // input value of level 1; that of level 0 is 0
  i16 threshold[plane_slots];  // before modulation
  i16 lowest, highest;         // sample + error line: within these no quantisation error leaves the rows
};

// P: an ed_precision.
template <class P>
struct two_level_rows {
  // The rows belong to quantisation errors from -first to first - 1, counted from -first; others count as the nearest.
  static constexpr i32 first = P::carries ? 1024 : 512;
  static constexpr u32 count = 2 * first;

  using ahead_row = std::conditional_t<P::carries, u64, u32>;  // without carry nothing goes beyond the second next
  using below_row = u64;                                       // two pixels back, one back, same column
  // All errors of one row of the distribution table share one; in 10-bit precision these are rounded toward zero.
  static constexpr u32 below_of(u32 error) { return P::carries ? (error + (error < u32(first) ? 3 : 0)) >> 2 : error; }
  static constexpr u32 below_count = below_of(count - 1) + 1;

  static constexpr u32 below_at = count * sizeof(ahead_row);  // in bytes; the rows of amounts ahead come first
  static constexpr u32 bytes = below_at + below_count * sizeof(below_row);

  // Of an error. Handles lie at any multiple of 4, so words of 8 bytes do too.
  static ahead_row ahead(const u8* rows, std::size_t error) {
    return load_sample<ahead_row>(rows + error * sizeof(ahead_row));
  }
  static below_row below(const u8* rows, std::size_t error) {
    return load_sample<below_row>(rows + below_at + below_of(u32(error)) * sizeof(below_row));
  }
};

// Fills in all but the rows. False where tables do not qualify, because
// - a plane has another number of levels, or its level 0 stands for another value than 0;
// - a sample of 0 without error could get level 1, or no error at all would send something;
// - samples and modulation alone can lead to quantisation errors that have no row;
// - the rows do not fit where the handle's tables for any number of levels would stand.
template <class P>
bool check_two_levels(P precision, const ed_plan& plan, const byte_view& params, const byte_view& distribution,
                      two_level_tables& tables);

// Fills the rows, for which there is memory.
template <class P>
void build_two_level_rows(P precision, const ed_plan& plan, const byte_view& distribution, two_level_tables& tables);

}  // namespace vrk
