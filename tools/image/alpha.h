// Pixels that do not cover what is behind them.
#pragma once

namespace vrk::tool {

// A level over paper, mixed as the numbers stand. share: of the paper that the pixel covers, 0 ... full; nothing is
// above 65535.
constexpr unsigned over_paper(unsigned level, unsigned paper, unsigned share, unsigned full) {
  return (level * share + paper * (full - share) + full / 2) / full;
}

}  // namespace vrk::tool
