// One line of a block: samples in, packed lines or dot cells out.

#include "base/carver.h"
#include "base/flags.h"
#include "halftone/ed/codes.h"
#include "halftone/ed/ed_kernels.h"
#include "halftone/ed/expand.h"
#include "halftone/pack.h"
#include "vrk.h"

namespace {

using namespace vrk;

void pack_planes(ed_handle& h, u8* const* out) {
  const u32 width = h.block_width;
  for (u32 p = 0; p < h.planes; ++p) {
    const u32 slot = table_slot[p], bits = h.header.bits[slot], level_count = h.header.level_count[slot];
    u8* const codes = h.level_line.get() + std::size_t(p) * h.width;
    if (p == 0 && has(h.flags, VRK_K_CODE3) && level_count == 3) to_three_level_codes(codes, width);
    if (bits == 4 && has(h.flags, VRK_RANDOM4)) to_random_codes(codes, width, level_count);
    pack_line(bits, codes, width, out[p]);
  }
}

u32 halftone_line(ed_handle& h, const void* src, u8* const* out) {
  ed_kernel_of(h.kernel, h.line_counter)(h, static_cast<const u8*>(src));
  h.header.extended ? expand_planes(h, out) : pack_planes(h, out);
  ++h.line_counter;
  return 1;
}

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_exec_ed(void* handle, const void* src, uint8_t* out_k, uint8_t* out_c, uint8_t* out_m,
                              uint8_t* out_y, uint8_t* out_5, uint8_t* out_6) {
  ed_handle& h = record_of<ed_handle>(handle);
  if (h.header.extended) return 0;
  u8* const out[plane_slots] = {out_k, out_c, out_m, out_y, out_5, out_6};
  return halftone_line(h, src, out);
}

uint32_t VRK_CALL vrk_exec_edx(void* handle, const void* src, uint8_t* const* planes) {
  return halftone_line(record_of<ed_handle>(handle), src, planes);
}

}  // extern "C"
