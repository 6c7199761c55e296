// The first pre-processor: balance by three steps, lift, contrast, curves.
#include <algorithm>

#include "preproc/preproc_kernels.h"
#include "preproc/preproc_setup.h"
#include "vrk.h"

namespace {

using namespace vrk;

// Steps below -5 would turn the power negative; they count as -5, which maps everything to the two middle levels.
double contrast_exponent(i32 step) { return std::max(step, -5) * 0.2 + 1.0; }

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_create_preproc(const int16_t* balance, uint32_t lift, uint32_t contrast, uint32_t use_curve,
                                     const void* curve, uint32_t use_rgb_curves, const void* rgb_curves, uint32_t flags,
                                     void* mem) {
  preproc_request request{.record_bytes = 65,
                          .balance_unit = 0.0392156862745098,  // 10 / 255
                          .lift_step = i8(lift),
                          .contrast_step = i8(contrast),
                          .contrast_exponent = contrast_exponent(i8(contrast)),
                          .use_curve = use_curve != 0,
                          .use_rgb_curves = use_rgb_curves != 0,
                          .curve = curve,
                          .rgb_curves = rgb_curves,
                          .flags = flags};
  if (balance != nullptr) request.balance_steps = {balance[0], balance[1], balance[2]};
  return preproc_create(request, mem);
}

uint32_t VRK_CALL vrk_query_preproc_hint(const void* handle) { return record_of<preproc_handle>(handle).flags; }

void VRK_CALL vrk_set_preproc_rgb(void* handle, uint32_t layout) {
  record_of<preproc_handle>(handle).layout = u8(layout);
}

uint32_t VRK_CALL vrk_xform_preproc(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count,
                                    void* dst) {
  return preproc_transform(record_of<preproc_handle>(handle), static_cast<const u8*>(src), mask, pixel_count,
                           static_cast<u8*>(dst));
}

void VRK_CALL vrk_free_preproc(void*) {}

}  // extern "C"
