#include "halftone/ed/two_level_tables.h"

#include <algorithm>

#include "halftone/ed/ed_handle.h"

namespace vrk {

namespace {

constexpr u32 amount_count = 7;

// What a quantisation error sends: to the four next pixels, then to the three on the next line.
template <class P>
struct sent_amounts {
  i32 amount[amount_count];

  sent_amounts(P precision, const ed_plan& plan, const byte_view& distribution, i32 error) {
    const i32 row = distribution_row_of(precision, error, plan.distribution_rows);
    const u8* const entries = distribution.at(distribution_header_bytes) + 2 * i32(distribution_columns) * row;
    const auto entry = [&](u32 column) { return i32(i16(precision.amount(load_be16(entries + 2 * column)))); };
    const carry_digits carry = P::carries ? carry_of(error) : carry_digits{};
    const i32 all[amount_count] = {entry(0), entry(1), carry.third, carry.fourth, entry(2), entry(3), entry(4)};
    std::copy_n(all, amount_count, amount);
  }
};

// Whether sums of the amounts, raised, stay below 2^16. Fills in what they are raised by. largest_ahead: of the sums
// for the next pixel, not raised.
template <class P>
bool check_amounts(P precision, const ed_plan& plan, const byte_view& distribution, two_level_tables& tables,
                   i32& largest_ahead) {
  constexpr i32 first = two_level_rows<P>::first;
  i32 low[amount_count]{}, high[amount_count]{};
  for (i32 error = -first; error < first; ++error) {
    const sent_amounts<P> sent(precision, plan, distribution, error);
    for (u32 i = 0; i < amount_count; ++i) {
      low[i] = std::min(low[i], sent.amount[i]), high[i] = std::max(high[i], sent.amount[i]);
      if (error == 0 && sent.amount[i] != 0) return false;
    }
  }
  // What arrives at an entry was sent from as many places as there are amounts from its own on.
  const auto add_up = [&](u32 begin, u32 end, u16* raised) {
    i32 most = 0, least = 0;
    for (u32 i = end; i-- > begin;) {
      most += high[i], least += low[i];
      raised[i - begin] = u16(-least);
    }
    largest_ahead = begin == 0 ? most : largest_ahead;
    return most - least <= 0x7FFF;
  };
  return add_up(0, 4, tables.ahead_raised) && add_up(4, amount_count, tables.below_raised);
}

template <class P>
bool check_plane(P precision, const ed_plan& plan, const byte_view& params, u32 p, two_level_tables& tables) {
  constexpr i32 first = two_level_rows<P>::first;
  const u32 slot = table_slot[p];
  if (plan.header.level_count[slot] != 2) return false;
  const u8* const values = params.at(plan.values_at[slot]);
  if (precision.level_value(load_be16(values)) != 0) return false;
  const i32 full = precision.level_value(load_be16(values + 2));
  const i32 threshold = i16(precision.level_value(load_be16(params.at(plan.thresholds_at[slot]))));
  const u8* const matrix = params.at(plan.matrix_at[slot]);
  for (u32 i = 0; i < plan.header.matrix.entries(); ++i) {
    const i32 modulated = threshold + precision.modulation(i8(matrix[i]));
    if (modulated < 1 || modulated > first || modulated - full < -first) return false;
  }
  tables.full[p] = u16(full);
  tables.threshold[p] = i16(threshold);
  return full != 0;
}

}  // namespace

template <class P>
bool check_two_levels(P precision, const ed_plan& plan, const byte_view& params, const byte_view& distribution,
                      two_level_tables& tables) {
  using rows = two_level_rows<P>;
  if (plan.planes == 0 || rows::bytes > table_bytes(precision, plan)) return false;
  // Beyond the rows the distribution table must not tell errors apart.
  if (distribution_row_of(precision, rows::first - 1, plan.distribution_rows) !=
      distribution_row_of(precision, 1023, plan.distribution_rows)) {
    return false;
  }
  i32 largest_ahead = 0;
  if (!check_amounts(precision, plan, distribution, tables, largest_ahead)) return false;
  for (u32 p = 0; p < plan.planes; ++p) {
    if (!check_plane(precision, plan, params, p, tables)) return false;
  }
  const i32 lowest = tables.ahead_raised[0] - rows::first;
  const i32 highest = rows::first - 1 - largest_ahead + *std::min_element(tables.full, tables.full + plan.planes);
  tables.lowest = i16(lowest);
  tables.highest = i16(highest);
  return lowest <= 0 && highest >= precision.range - 1;
}

template <class P>
void build_two_level_rows(P precision, const ed_plan& plan, const byte_view& distribution, two_level_tables& tables) {
  using rows = two_level_rows<P>;
  for (u32 error = 0; error < rows::count; ++error) {
    const sent_amounts<P> sent(precision, plan, distribution, i32(error) - rows::first);
    const auto row = [&](u32 begin, u32 end, const u16* raised) {
      u64 word = 0;
      for (u32 i = end; i-- > begin;) {
        const u32 after = i + 1 < end ? raised[i + 1 - begin] : 0;
        word = word << 16 | (u32(sent.amount[i]) + raised[i - begin] - after);
      }
      return word;
    };
    const auto ahead = typename rows::ahead_row(row(0, 4, tables.ahead_raised));
    store_sample(tables.rows.get() + error * sizeof ahead, ahead);
    const typename rows::below_row below = row(4, amount_count, tables.below_raised);
    store_sample(tables.rows.get() + rows::below_at + rows::below_of(error) * sizeof below, below);
  }
}

template bool check_two_levels(ed_precision<8>, const ed_plan&, const byte_view&, const byte_view&, two_level_tables&);
template bool check_two_levels(ed_precision<10>, const ed_plan&, const byte_view&, const byte_view&, two_level_tables&);
template void build_two_level_rows(ed_precision<8>, const ed_plan&, const byte_view&, two_level_tables&);
template void build_two_level_rows(ed_precision<10>, const ed_plan&, const byte_view&, two_level_tables&);

}  // namespace vrk
