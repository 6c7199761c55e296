// The post-processing handle: what set-up builds and the transform reads.
#pragma once

#include "base/carver.h"
#include "base/cpu_level.h"
#include "base/ref.h"

namespace vrk {

constexpr u32 postproc_planes = 6;  // K, C, M, Y, fifth (beside C), sixth (beside M); a pixel has the first 1, 4 or 6

constexpr bool is_channel_count(u32 n) { return n == 1 || n == 4 || n == 6; }

// Whether pixels of `in` samples can become pixels of `out`: all planes stay, or four split into six.
constexpr bool has_path(u32 in, u32 out) { return in == out || (in == 4 && out == 6); }

struct postproc_handle {
  ref<u16> main_curve[postproc_planes];   // index -> value handed on; of all planes of a pixel, or of none
  ref<u16> plane_curve[postproc_planes];  // value handed on, or index -> output; none where no table was given
  ref<u16> composed16;                    // both curves in one, E entries per plane; with compose and out16
  ref<u8> composed8;                      // the same for 8-bit output
  u32 flags;                              // as given to create
  u8 planes;                              // as given to create: not checked when the main table counts the channels
  u8 in_channels, out_channels;           // samples per pixel: 1, 4 or 6
  cpu_level level;                        // of the processor
  u8 row, in_place_row;                   // of postproc_rows; the second for lines that take the place of their source
};

constexpr u32 postproc_record_bytes = 92;  // what the size rule counts for the record
static_assert(sizeof(postproc_handle) + record_slack <= postproc_record_bytes);

}  // namespace vrk
