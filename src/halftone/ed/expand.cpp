#include "halftone/ed/expand.h"

#include "halftone/pack.h"

namespace vrk {

namespace {

// The cell of every pixel of a plane, into the cell line.
void look_up_cells(ed_handle& h, u32 plane, const u8* levels) {
  const tile& pattern = h.header.pattern;
  const u32 cells_of_level = pattern.entries(), width = h.block_width;
  const u16* const row = h.cells[plane].get() + pattern.row_of(h.line_counter) * pattern.width;
  const u8* const column = h.pattern_column.get() + h.block_x;
  u16* const cell = h.cell_line.get();
  for (u32 i = 0; i < width; ++i) cell[i] = row[levels[i] * cells_of_level + column[i]];
}

}  // namespace

void expand_planes(ed_handle& h, u8* const* out) {
  const u32 width = h.block_width;
  const u16* const cell = h.cell_line.get();
  for (u32 p = 0; p < h.planes; ++p) {
    const u32 dots = h.header.scale_x[table_slot[p]], lines = h.header.scale_y[table_slot[p]];
    u8* const levels = h.level_line.get() + std::size_t(p) * h.width;
    look_up_cells(h, p, levels);
    u8* const codes = levels;  // which have done their work
    for (u32 y = 0; y < lines; ++y) {
      const u32 shift = 16 - 4 * y - dots, mask = (1u << dots) - 1;  // the first dots of row y of a cell
      for (u32 i = 0; i < width; ++i) codes[i] = u8(cell[i] >> shift & mask);
      pack_line(dots, codes, width, *out++);
    }
  }
}

}  // namespace vrk
