// The record at the start of a handle of either pre-processor.
#pragma once

#include "base/carver.h"
#include "base/flags.h"
#include "base/ref.h"
#include "base/samples.h"

namespace vrk {

constexpr u32 input_levels = 256;  // pixels come as bytes

struct preproc_handle {
  u32 flags = 0;                     // the hint word: flags as kept
  u8 layout = 0;                     // pixel layout; transforms refuse anything above 3
  u16 channel_bytes = 0;             // from the output samples of a channel to the next one's; 0: all have the same
  ref<u8> outputs;                   // the output sample of every input level; none: there is no stage
  ref<u8> balance_steps;             // the steps for R, G and B as signed 16-bit words, at any address
  ref<u8> lift_step, contrast_step;  // one signed byte each
};
static_assert(sizeof(preproc_handle) + record_slack <= 57);  // what the smaller of the two size rules counts for it

}  // namespace vrk
