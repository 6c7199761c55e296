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
  u8 value_bits = 8;                 // of what the chain of stages hands on: 10 with wide tables and any stage, else 8
  ref<u8> balance_steps;             // the steps for R, G and B as signed 16-bit words, at any address
  ref<u8> lift_step, contrast_step;  // one signed byte each
  ref<u16> balance;                  // R, G, B: an entry for each input level, 0 ... 255 (narrow) or 0 ... 1023 (wide)
  ref<u16> lift, contrast;           // 256 entries 0 ... 255 (narrow) or 1024 entries 0 ... 1023 (wide)
  ref<u16> curve;                    // 1024 entries 0 ... 1023
  ref<u16> rgb_curves;               // R, G, B: 1024 entries each, 0 ... 1023
  ref<u16> combined;                 // R, G, B: the whole chain, an entry for each input level; only with compose
  ref<u8> staging;                   // one output pixel, always zero: transforms keep theirs in locals
};
static_assert(sizeof(preproc_handle) + record_slack <= 57);  // what the smaller of the two size rules counts for it

// With wide tables the first stage present turns 8-bit values into 10-bit ones.
constexpr bool preproc_is_wide(u32 flags) { return has(flags, VRK_OUT16 | VRK_MID10 | VRK_COMPOSE); }

}  // namespace vrk
