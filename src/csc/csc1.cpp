#include "base/carver.h"

#include "base/flags.h"
#include "base/tag.h"
#include "csc/csc1_handle.h"

#include "vrk.h"

namespace vrk {
namespace {

constexpr grid_format csc1_formats[] = {{3, csc1_stored, {0, 1, 2}}};

struct csc1_plan {
  csc1_rule rule;
  grid_plan grid;  // under rule `grid`
  u32 flags;       // as adjusted
  u32 size;        // of the handle in bytes
};

constexpr csc1_rule rule_of(u32 subtype) {
  if (subtype == tag("thrh")) return csc1_rule::through;
  if (subtype == tag("gray")) return csc1_rule::gray;
  if (subtype == tag("blck")) return csc1_rule::black;
  if (subtype == tag("sold")) return csc1_rule::solid;
  return csc1_rule::grid;
}

bool csc1_check_table(byte_view& image, u32 flags, csc1_plan& plan) {
  const u32 magic = image.be32(0), subtype = image.be32(4);
  if (magic != tag("csc1")) return false;
  if (!image.ok()) return false;
  plan = {rule_of(subtype), {}, flags, csc1_record_bytes};
  if (plan.rule != csc1_rule::grid) return true;
  if (subtype > version_001z) return false;
  const bool header = check_grid_header(image, csc1_formats, delta8, plan.grid);
  if (header) plan.size = size_or_0(csc1_grid_bytes(plan.grid.n, has(flags, VRK_PREC12)));
  return header;
}

bool csc1_build(const csc1_plan& plan, byte_view& image, carver& block) {
  csc1_handle* const h = block.record<csc1_handle>(csc1_record_bytes);
  if (h == nullptr) return false;
  h->flags = plan.flags;
  if (plan.rule == csc1_rule::grid) {
    const bool built = build_grid(plan.grid, image, plan.flags, block, h->grid);
    if (!built) return built;
    build_white_output(h->grid, *plan.grid.format, plan.flags, h->white_out);
  }
  h->kernel = csc1_select_kernel(plan.rule, plan.flags, h->grid.bounded);
  return true;
}

}  // namespace
}  // namespace vrk

using namespace vrk;

extern "C" {

uint32_t VRK_CALL vrk_create_csc1(uint32_t table_size, const void* table, uint32_t flags, void* mem) {
  byte_view image(table, table_size);
  csc1_plan plan;
  if (!csc1_check_table(image, csc_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return csc1_build(plan, image, block) ? plan.size : 0;
}

uint32_t VRK_CALL vrk_query_csc1_hint(const void* handle) { return record_of<csc1_handle>(handle).flags; }

void VRK_CALL vrk_set_csc1_rgb(void* handle, uint32_t layout) { record_of<csc1_handle>(handle).layout = layout; }

uint32_t VRK_CALL vrk_xform_csc1(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count, void* dst) {
  const csc1_handle& h = record_of<csc1_handle>(handle);
  csc1_kernel_of(h)(h, static_cast<const u8*>(src), mask, pixel_count, static_cast<u8*>(dst));
  return 1;
}

void VRK_CALL vrk_free_csc1(void*) {}

}  // extern "C"
