// Set-up of both pre-processors. They differ in what a request says.
#pragma once

#include <array>
#include <optional>

#include "base/integers.h"

namespace vrk {

// The caller's settings, and all that tells the two pre-processors apart.
struct preproc_request {
  u32 record_bytes{};                                 // counted for the record, flags word and layout byte
  std::optional<std::array<i32, 3>> balance_steps{};  // R, G, B
  double balance_unit{};  // twice what one step moves the middle of a curve by, of full scale
  i8 lift_step{};         // 0: no such stage, as the next
  i8 contrast_step{};
  double contrast_exponent{};
  bool use_curve{}, use_rgb_curves{};
  const void* curve{};       // image of one curve
  const void* rgb_curves{};  // image of three curves
  u32 flags{};
};

// The size when `mem` is null, else the bytes used; 0 on failure.
u32 preproc_create(preproc_request request, void* mem);

}  // namespace vrk
