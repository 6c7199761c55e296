#include "kit/error_filters.h"

#include <algorithm>

namespace vrk::kit {
namespace {

// Every neighbour gets the whole part of its share; what is left goes, one by one, to the largest remainders.
edtb_row distribute(const error_filter& filter, int quantisation_error) {
  edtb_row row{};
  std::array<int, 5> remainder{};
  int total = 0, given = 0;
  for (std::size_t i = 0; i < remainder.size(); ++i) {
    const int amount = quantisation_error * filter.shares[i];
    row[i] = std::int16_t(amount / filter.divisor);
    remainder[i] = amount % filter.divisor;
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

edtb_table distribution_table(const error_filter& filter) {
  constexpr int max_error = 255;
  edtb_table table;
  table.rows.resize(2 * max_error + 1);
  for (int e = 0; e <= max_error; ++e) {
    const edtb_row row = distribute(filter, e);
    edtb_row& negated = table.rows[std::size_t(max_error - e)];
    std::transform(row.begin(), row.end(), negated.begin(), [](int amount) { return std::int16_t(-amount); });
    table.rows[std::size_t(max_error + e)] = row;
  }
  return table;
}

}  // namespace vrk::kit
