// Pixel layouts and masks of the RGB stages.
#pragma once

#include "base/integers.h"

namespace vrk {

// A pixel's length and the places of its three colours, all in samples. The fourth sample of a longer pixel is the
// caller's.
struct rgb_layout {
  u32 samples, r, g, b;
};

constexpr u32 layout_count = 4;
constexpr rgb_layout rgb_layouts[layout_count] = {
    {3, 0, 1, 2},  // R, G, B
    {3, 2, 1, 0},  // B, G, R
    {4, 2, 1, 0},  // B, G, R, pad
    {4, 1, 2, 3},  // pad, R, G, B
};

// A mask holds one bit a pixel, the first pixel in the most significant bit of a byte. A null mask masks nothing.
inline bool is_masked(const u8* mask, u32 pixel) {
  return mask != nullptr && (mask[pixel / 8] >> (7 - pixel % 8) & 1) != 0;
}

}  // namespace vrk
