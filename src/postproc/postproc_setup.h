// Set-up of post-processing: which tables and flags are taken, how large the handle is, and what stands in it.
#pragma once

#include <array>

#include "base/carver.h"
#include "postproc/postproc_handle.h"

namespace vrk {

struct postproc_table {
  u32 on;             // 0: no such table, the image is never read
  const void* image;  // curve table image
};

// The arguments of create, tables in plane order.
struct postproc_request {
  u32 planes;
  postproc_table main;
  std::array<postproc_table, postproc_planes> plane;
  u32 flags;
};

// What the header checks found out.
struct postproc_plan {
  u32 in_channels, out_channels;  // samples per pixel
  u32 main_curves;                // curves of the main table that count: their number says which plane each belongs to
};

bool postproc_check(const postproc_request& request, postproc_plan& plan);

// 0 when pixels of so many samples are not handled.
u64 postproc_handle_size(const postproc_request& request, const postproc_plan& plan);

bool postproc_build(const postproc_request& request, const postproc_plan& plan, carver& block);

}  // namespace vrk
