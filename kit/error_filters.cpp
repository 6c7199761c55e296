#include "kit/error_filters.h"

#include <algorithm>

namespace vrk::kit {
namespace {

struct exact_shares {
  std::array<int, 5> shares;
  int divisor;
};

// size: as in shares_from
exact_shares shares_of(const error_filter& filter, int size) {
  shares_from below{0, filter.shares};
  for (const shares_from& above : filter.larger) {
    if (size < above.error) {
      const int distance = above.error - below.error, gone = size - below.error;
      exact_shares between{{}, filter.divisor * distance};
      for (std::size_t i = 0; i < between.shares.size(); ++i) {
        between.shares[i] = below.shares[i] * (distance - gone) + above.shares[i] * gone;
      }
      return between;
    }
    below = above;
  }
  return {below.shares, filter.divisor};
}

int rounded_down(int dividend, int divisor) { return (dividend - (dividend < 0 ? divisor - 1 : 0)) / divisor; }

// Every neighbour gets its share rounded down; what is left goes, one by one, to the largest remainders.
edtb_row distribute(const exact_shares& filter, int quantisation_error) {
  edtb_row row{};
  std::array<int, 5> remainder{};
  int total = 0, given = 0;
  for (std::size_t i = 0; i < remainder.size(); ++i) {
    const int amount = quantisation_error * filter.shares[i];
    row[i] = std::int16_t(rounded_down(amount, filter.divisor));
    remainder[i] = amount - row[i] * filter.divisor;
    total += amount;
    given += row[i];
  }
  for (int left = total / filter.divisor - given; left > 0; --left) {
    const auto largest = std::max_element(remainder.begin(), remainder.end());
    ++row[std::size_t(largest - remainder.begin())];
    *largest = 0;
  }
  return row;
}

}  // namespace

const error_filter* find_error_filter(std::string_view name) {
  const auto at = std::find_if(error_filters.begin(), error_filters.end(), [&](auto& f) { return f.name == name; });
  return at == error_filters.end() ? nullptr : &*at;
}

edtb_table distribution_table(const error_filter& filter, unsigned levels) {
  constexpr int max_error = 255;
  edtb_table table;
  table.rows.resize(2 * max_error + 1);
  for (int e = 0; e <= max_error; ++e) {
    const edtb_row row = distribute(shares_of(filter, e * (int(levels) - 1)), e);
    edtb_row& negated = table.rows[std::size_t(max_error - e)];
    std::transform(row.begin(), row.end(), negated.begin(), [](int amount) { return std::int16_t(-amount); });
    table.rows[std::size_t(max_error + e)] = row;
  }
  return table;
}

}  // namespace vrk::kit
