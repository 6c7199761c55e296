// The second pre-processor: as the first, with a two-dimensional balance control and no lift.
#include <algorithm>

#include "preproc/preproc_setup.h"
#include "vrk.h"

namespace {

using namespace vrk;

// Steps of G by the control values b (rows) and a (columns), each from -5 to 5; those of B stand in row -b.
// clang-format off
constexpr i8 balance_grid[11][11] = {
    { 5,  5,  5,  5,  5,  5,  5,  5,  5,  5,  5},
    { 5,  4,  4,  4,  4,  4,  4,  4,  4,  4,  3},
    { 5,  4,  3,  3,  3,  3,  3,  3,  3,  2,  1},
    { 5,  4,  3,  2,  2,  2,  2,  2,  1,  0, -1},
    { 5,  4,  3,  2,  1,  1,  1,  0, -1, -2, -3},
    { 5,  4,  3,  2,  1,  0, -1, -2, -3, -4, -5},
    { 3,  2,  1,  0, -1, -1, -1, -2, -3, -4, -5},
    { 1,  0, -1, -2, -2, -2, -2, -2, -3, -4, -5},
    {-1, -2, -3, -3, -3, -3, -3, -3, -3, -4, -5},
    {-3, -4, -4, -4, -4, -4, -4, -4, -4, -4, -5},
    {-5, -5, -5, -5, -5, -5, -5, -5, -5, -5, -5},
};
// clang-format on

std::array<i32, 3> balance_steps(i32 a, i32 b) {
  a = std::clamp(a, -5, 5);
  b = std::clamp(b, -5, 5);
  return {a, balance_grid[5 + b][5 + a], balance_grid[5 - b][5 + a]};
}

double contrast_exponent(i32 step) { return step < 0 ? 1 / (1 + 0.4 * -step) : 1 + 0.4 * step; }

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_create_preproc2(const int16_t* balance, uint32_t contrast, uint32_t use_curve, const void* curve,
                                      uint32_t use_rgb_curves, const void* rgb_curves, uint32_t flags, void* mem) {
  preproc_request request{.record_bytes = 57,
                          .balance_unit = 0.0196078431372549,  // 5 / 255
                          .contrast_step = i8(contrast),
                          .contrast_exponent = contrast_exponent(i8(contrast)),
                          .use_curve = use_curve != 0,
                          .use_rgb_curves = use_rgb_curves != 0,
                          .curve = curve,
                          .rgb_curves = rgb_curves,
                          .flags = flags};
  if (balance != nullptr) request.balance_steps = balance_steps(balance[0], balance[1]);
  return preproc_create(request, mem);
}

uint32_t VRK_CALL vrk_query_preproc2_hint(const void* handle) { return vrk_query_preproc_hint(handle); }

void VRK_CALL vrk_set_preproc2_rgb(void* handle, uint32_t layout) { vrk_set_preproc_rgb(handle, layout); }

uint32_t VRK_CALL vrk_xform_preproc2(void* handle, const void* src, const uint8_t* mask, uint32_t pixel_count,
                                     void* dst) {
  return vrk_xform_preproc(handle, src, mask, pixel_count, dst);
}

void VRK_CALL vrk_free_preproc2(void*) {}

}  // extern "C"
