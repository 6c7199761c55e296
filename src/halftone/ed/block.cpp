// The block protocol: which errors live on from one block to the next.
#include <cstring>

#include "base/carver.h"
#include "base/flags.h"
#include "halftone/ed/ed_handle.h"
#include "vrk.h"

namespace {

using namespace vrk;

// Forgets the errors of the columns from `begin` up to `end`, counted from the first guard column, in both lines.
void clear_columns(ed_handle& h, u64 begin, u64 end) {
  for (ref<i16>& line : h.error_line) {
    std::memset(&line[std::size_t(begin) * h.planes], 0, std::size_t(end - begin) * h.planes * sizeof(i16));
  }
}

void clear_all_columns(ed_handle& h) { clear_columns(h, 0, u64(h.width) + 2 * guard_columns); }

void clear_columns_outside(ed_handle& h, u64 block_x, u64 block_width) {
  clear_columns(h, 0, guard_columns + block_x);
  clear_columns(h, guard_columns + block_x + block_width, u64(h.width) + 2 * guard_columns);
}

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_start_ed_block(void* handle, uint32_t block_width, uint32_t block_x, uint32_t line) {
  ed_handle& h = record_of<ed_handle>(handle);
  if (!block_fits(block_x, block_width, h.width)) return 0;
  if (line == h.line_counter) {
    clear_columns_outside(h, block_x, block_width);
  } else {
    clear_all_columns(h);
  }
  h.line_counter = line;
  h.block_x = block_x;
  h.block_width = block_width;
  return 1;
}

void VRK_CALL vrk_end_ed_block(void* handle) {
  ed_handle& h = record_of<ed_handle>(handle);
  clear_columns_outside(h, h.block_x, h.block_width);
}

void VRK_CALL vrk_clear_ed_buf(void* handle) { clear_all_columns(record_of<ed_handle>(handle)); }

}  // extern "C"
