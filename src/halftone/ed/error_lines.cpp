#include "halftone/ed/error_lines.h"

#include <cstring>

namespace vrk {

namespace {

// Of the columns from `begin` up to `end`, counted from the first guard column, in both lines.
void forget_columns(ed_handle& h, u64 begin, u64 end) {
  for (ref<i16>& line : h.error_line) {
    std::memset(&line[std::size_t(begin) * h.planes], 0, std::size_t(end - begin) * h.planes * sizeof(i16));
  }
}

}  // namespace

void forget_errors(ed_handle& h) { forget_columns(h, 0, u64(h.width) + 2 * guard_columns); }

void keep_errors_of_block(ed_handle& h, u32 block_x, u32 block_width) {
  const u64 first = u64(guard_columns) + block_x;
  forget_columns(h, 0, first);
  forget_columns(h, first + block_width, u64(h.width) + 2 * guard_columns);
}

}  // namespace vrk
