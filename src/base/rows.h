// Kernel families. A family is one constant table of rows; a row says what it is for and names its kernel. Creation
// searches the table and keeps the row's number in the handle.
#pragma once

#include <array>

#include "base/integers.h"

namespace vrk {

// The number of the first row that serves: rows for special cases stand before the row that serves them all. The
// table's size when none does, which every family rules out at compile time.
// All builds have the same rows in the same order, so that a handle's bytes do not depend on the build.
template <class Row, std::size_t count, class Serves>
constexpr u32 first_row(const std::array<Row, count>& rows, Serves serves) {
  u32 number = 0;
  while (number != count && !serves(rows[number])) ++number;
  return number;
}

}  // namespace vrk
