// The levels of vector instructions that kernels can be run at here.
#pragma once

#include <cstdio>
#include <vector>

#include "base/cpu_level.h"

namespace vrk::test {

// Says once which levels this processor does not have.
inline std::vector<cpu_level> levels_of_this_machine() {
  std::vector<cpu_level> levels;
  const cpu_level highest = level_of_processor();
  for (const cpu_level level : cpu_levels) {
    if (level <= highest) levels.push_back(level);
  }
  static const bool said = [&] {
    if (levels.size() != cpu_levels.size()) {
      std::fprintf(stderr, "This processor has %zu of %zu levels of vector instructions.\n", levels.size(),
                   cpu_levels.size());
    }
    return true;
  }();
  static_cast<void>(said);
  return levels;
}

}  // namespace vrk::test
