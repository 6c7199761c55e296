// The post-processing transform: a row for each pair of sample widths, one for pixels that get shorter in place, and
// one for four planes of bytes.
#pragma once

#include <span>

#include "postproc/postproc_handle.h"

namespace vrk {

using postproc_kernel = void(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst);

struct postproc_row {
  int in, out;    // bits per sample
  bool in_place;  // serves lines that take the place of their source only
  bool four;      // serves four planes that stay four only
  by_level<postproc_kernel*> kernel;
};
std::span<const postproc_row> postproc_rows();

// Finds the rows, by flags and planes.
void postproc_select_rows(postproc_handle& handle);

// Returns 1, or 0 with nothing written for counts of planes that have no path.
u32 postproc_transform(const postproc_handle& handle, const u8* src, u32 pixel_count, u8* dst);

}  // namespace vrk
