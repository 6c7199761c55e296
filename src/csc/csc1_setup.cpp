#include "csc/csc1_setup.h"

#include "base/flags.h"
#include "base/tag.h"
#include "csc/csc1_kernels.h"

namespace vrk {
namespace {

constexpr grid_format formats[] = {{3, csc1_stored, {0, 1, 2}}};

constexpr csc1_rule rule_of(u32 subtype) {
  if (subtype == tag("thrh")) return csc1_rule::through;
  if (subtype == tag("gray")) return csc1_rule::gray;
  if (subtype == tag("blck")) return csc1_rule::black;
  if (subtype == tag("sold")) return csc1_rule::solid;
  return csc1_rule::grid;
}

constexpr u64 grid_handle_bytes(u64 n, bool prec12) {  // n grid points per axis, 2 ... 255
  return csc1_record_bytes + grid_section_bytes(n, csc1_stored, prec12);
}
static_assert(grid_handle_bytes(17, false) == 21297 && grid_handle_bytes(17, true) == 52520);
static_assert(size_or_0(grid_handle_bytes(255, true)) != 0);

}  // namespace

bool csc1_check(byte_view& image, u32 flags, csc1_plan& plan) {
  const u32 magic = image.be32(0), subtype = image.be32(4);
  if (magic != tag("csc1") || !image.ok()) return false;
  plan = {rule_of(subtype), {}, flags, csc1_record_bytes};
  if (plan.rule != csc1_rule::grid) return true;
  if (subtype > version_001z || !check_grid_header(image, formats, delta8, plan.grid)) return false;
  plan.size = u32(grid_handle_bytes(plan.grid.n, has(flags, VRK_PREC12)));
  return true;
}

bool csc1_build(const csc1_plan& plan, byte_view& image, carver& block) {
  csc1_handle* const h = block.record<csc1_handle>(csc1_record_bytes);
  if (h == nullptr) return false;
  h->flags = plan.flags;
  if (plan.rule == csc1_rule::grid && !build_grid(plan.grid, image, plan.flags, block, h->grid)) return false;
  csc1_select_rows(plan.rule, *h);
  return true;
}

}  // namespace vrk
