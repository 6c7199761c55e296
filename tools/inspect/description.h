// What tables hold, told once for people and programs.
#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/pipeline/table.h"

namespace vrk::tool {

// Named values in the order in which they are shown.
using tree = nlohmann::ordered_json;

// Members of every table: "kind"; "bytes"; "taken", whether the library takes the table, at one precision at least; if
// not, "refused"; else what the table holds, and the "handles" that it serves. A parameter blob is taken when look-ups
// find all of its entries, and the library takes all of these that it has a use for.
tree describe(const table& image);

// The parts for the kinds of tables. The library takes the table.
tree describe_csc1(const table& image);
tree describe_csc2(const table& image);
tree describe_curves(const table& image);
tree describe_edpr(const table& image);
tree describe_edtb(const table& image);
tree describe_dith(const table& image);

// The numbers; of very many only how many they are, the smallest and the largest. width: of a row, if they are a
// matrix.
template <class Number>
tree numbers(const std::vector<Number>& all, std::size_t width = 0) {
  constexpr std::size_t most = 1 << 16;
  if (all.size() > most) {
    const auto [smallest, largest] = std::minmax_element(all.begin(), all.end());
    return {{"numbers", all.size()}, {"smallest", *smallest}, {"largest", *largest}};
  }
  if (width == 0) return all;
  tree rows = tree::array();
  for (auto at = all.begin(); at != all.end(); at += std::ptrdiff_t(width)) {
    rows.push_back(std::vector<Number>(at, at + std::ptrdiff_t(width)));
  }
  return rows;
}

}  // namespace vrk::tool
