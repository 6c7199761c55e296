#include "base/carver.h"

#include "base/flags.h"
#include "base/tag.h"
#include "csc/csc2_handle.h"

#include "csc/level_curve.h"
#include "vrk.h"

namespace vrk {
namespace {

// Table order is C, M, Y, K or C, fifth, M, sixth, Y, K; handle and output order K, C, M, Y, fifth, sixth.
constexpr grid_format csc2_formats[] = {{4, 4, {1, 2, 3, 0}}, {6, 6, {1, 4, 2, 5, 3, 0}}};

struct csc2_plan {
  bool curve;      // a tone curve instead of a grid
  bool gray;       // one sample an input pixel instead of three
  grid_plan grid;  // of a grid
  u32 flags;       // as adjusted
  u32 size;        // of the handle in bytes
};

bool csc2_check_grid(byte_view& image, csc2_plan& plan) {
  if (image.be32(4) > version_001z) return false;
  const bool header = check_grid_header(image, csc2_formats, delta10, plan.grid);
  if (header) {
    plan.size = size_or_0(csc2_grid_bytes(plan.grid.n, plan.grid.format->stored, has(plan.flags, VRK_PREC12)));
  }
  return header;
}

bool csc2_check_curve(const byte_view& image, csc2_plan& plan) {
  plan.curve = true;
  plan.size = csc2_curve_bytes(plan.flags);
  if (image.size() <= 12) return false;
  return curve_image(image.at(0), image.size()).check_header(version_001z, 1);
}

bool csc2_check_table(byte_view& image, u8 input_samples, u32 flags, csc2_plan& plan) {
  const u32 magic = image.be32(0);
  plan = {};
  plan.flags = flags;
  plan.gray = input_samples == 1;
  if (magic == tag("csc2")) {
    return input_samples == 1 || input_samples == 3 ? csc2_check_grid(image, plan) : false;
  }
  if (magic == tag("1dlt")) return input_samples == 1 ? csc2_check_curve(image, plan) : false;
  return false;
}

bool csc2_build(const csc2_plan& plan, byte_view& image, carver& block) {
  csc2_handle* const h = block.record<csc2_handle>(csc2_record_bytes);
  if (h == nullptr) return false;
  h->flags = plan.flags;
  if (plan.curve) {
    if (!image.holds(0, curve_image::bytes(1))) return false;
    h->curve = build_curve_table(curve_image(image.at(0), image.size()), plan.flags, block);
    h->kernel = csc2_select_curve_kernel(plan.flags);
    return bool(h->curve);
  }
  const bool built = build_grid(plan.grid, image, plan.flags, block, h->grid);
  if (!built) return built;
  build_white_output(h->grid, *plan.grid.format, plan.flags, h->white_out);
  h->kernel = csc2_select_kernel(plan.grid.format->stored, plan.gray, plan.flags, h->grid.bounded);
  return true;
}

}  // namespace
}  // namespace vrk

using namespace vrk;

extern "C" {

uint32_t VRK_CALL vrk_create_csc2(uint32_t table_size, const void* table, uint32_t input_samples, uint32_t flags,
                                  void* mem) {
  byte_view image(table, table_size);
  csc2_plan plan;
  if (!csc2_check_table(image, u8(input_samples), csc_adjust_flags(flags), plan)) return 0;
  if (mem == nullptr) return plan.size;
  carver block(mem, plan.size);
  return csc2_build(plan, image, block) ? plan.size : 0;
}

uint32_t VRK_CALL vrk_query_csc2_hint(const void* handle) { return record_of<csc2_handle>(handle).flags; }

void VRK_CALL vrk_set_csc2_rgb(void* handle, uint32_t layout) { record_of<csc2_handle>(handle).layout = layout; }

uint32_t VRK_CALL vrk_xform_csc2(void* handle, const void* src, uint32_t pixel_count, void* dst) {
  const csc2_handle& h = record_of<csc2_handle>(handle);
  csc2_kernel_of(h)(h, static_cast<const u8*>(src), pixel_count, static_cast<u8*>(dst));
  return 1;
}

void VRK_CALL vrk_free_csc2(void*) {}

}  // extern "C"
