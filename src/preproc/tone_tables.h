// The tone tables of the balance, lift and contrast stages, from steps.
#pragma once

#include <span>

#include "base/integers.h"

namespace vrk {

// 256 entries up to `max` (255 or 1023). A step lifts the middle by half of `unit` of full scale; 0 is the identity.
void balance_curve(i32 step, double unit, u32 max, std::span<u16> entries);

// Entries of 0 ... 255 (256 of them) or 0 ... 1023 (1024), as the next.
void lift_curve(i32 step, std::span<u16> entries);

// Two power segments that meet in the middle; exponent >= 0, above 1 for more contrast.
void contrast_curve(double exponent, std::span<u16> entries);

}  // namespace vrk
