#include "csc/csc2_setup.h"

#include "base/flags.h"
#include "base/tag.h"
#include "csc/csc2_kernels.h"
#include "csc/curve_table.h"

namespace vrk {
namespace {

// Table order is C, M, Y, K or C, fifth, M, sixth, Y, K; handle and output order K, C, M, Y, fifth, sixth.
constexpr grid_format formats[] = {{4, 4, {1, 2, 3, 0}}, {6, 6, {1, 4, 2, 5, 3, 0}}};

constexpr u64 grid_handle_bytes(u64 n, u64 inks, bool prec12) {  // n grid points per axis, 2 ... 255
  return csc2_record_bytes + grid_section_bytes(n, inks, prec12);
}
static_assert(grid_handle_bytes(17, 4, false) == 21389 && grid_handle_bytes(17, 6, false) == 31215);
static_assert(grid_handle_bytes(17, 4, true) == 52612 && grid_handle_bytes(17, 6, true) == 72264);
static_assert(size_or_0(grid_handle_bytes(255, 6, true)) != 0);

constexpr u32 curve_handle_bytes(u32 flags) { return csc2_record_bytes + section_slack + curve_table_bytes(flags); }
static_assert(curve_handle_bytes(0) == 703 && curve_handle_bytes(VRK_OUT16) == 959);
static_assert(curve_handle_bytes(VRK_IN16) == 65983 && curve_handle_bytes(VRK_IN16 | VRK_OUT16) == 131519);

bool check_grid(byte_view& image, csc2_plan& plan) {
  if (image.be32(4) > version_001z || !check_grid_header(image, formats, delta10, plan.grid)) return false;
  plan.size = u32(grid_handle_bytes(plan.grid.n, plan.grid.format->stored, has(plan.flags, VRK_PREC12)));
  return true;
}

bool check_curve(const byte_view& image, csc2_plan& plan) {
  plan.curve = true;
  plan.size = curve_handle_bytes(plan.flags);
  return image.size() > 12 && curve_image(image.at(0), image.size()).check_header(version_001z, 1);
}

bool build_curve(byte_view& image, carver& block, csc2_handle& h) {
  if (!image.holds(0, curve_image::bytes(1))) return false;
  h.curve = build_curve_table(curve_image(image.at(0), image.size()), h.flags, block);
  return bool(h.curve);
}

}  // namespace

bool csc2_check(byte_view& image, u8 input_samples, u32 flags, csc2_plan& plan) {
  plan = {};
  plan.flags = flags;
  plan.gray = input_samples == 1;
  const u32 magic = image.be32(0);
  if (magic == tag("csc2")) return (input_samples == 1 || input_samples == 3) && check_grid(image, plan);
  return magic == tag("1dlt") && input_samples == 1 && check_curve(image, plan);
}

bool csc2_build(const csc2_plan& plan, byte_view& image, carver& block) {
  csc2_handle* const h = block.record<csc2_handle>(csc2_record_bytes);
  if (h == nullptr) return false;
  h->flags = plan.flags;
  const bool built =
      plan.curve ? build_curve(image, block, *h) : build_grid(plan.grid, image, plan.flags, block, h->grid);
  if (built) csc2_select_rows(plan.curve ? 1 : plan.grid.format->stored, plan.gray, *h);
  return built;
}

}  // namespace vrk
