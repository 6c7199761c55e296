// Chooses rows of the linked library's handles.
#pragma once

#include "base/carver.h"
#include "base/cpu_level.h"
#include "bench/paired/works.h"

namespace vrk::bench {

// Sets the level that `choice` stands for; false where the handle was made for less, or its family has no levels.
template <class Handle>
bool choose_level(Handle& h, rows choice) {
  if (choice == rows::chosen) return true;
  if constexpr (requires { h.level; }) {
    const cpu_level level = choice == rows::sse41 ? cpu_level::sse41 : cpu_level::base;
    if (h.level < level || (choice != rows::defined && h.level == level)) return false;
    h.level = level;
    return true;
  } else {
    return choice == rows::defined;
  }
}

// The last row like the one numbered `row`: rows for special cases stand before the one that serves them all.
template <class Row, class Alike>
u32 defined_row(std::span<const Row> rows, u32 row, Alike alike) {
  u32 found = row;
  for (u32 i = row; i < rows.size(); ++i) {
    if (alike(rows[i], rows[row])) found = i;
  }
  return found;
}

}  // namespace vrk::bench
