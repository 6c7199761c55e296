#include "fuzz/library/pre_processors.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const auto create = [](const preproc_arguments& a, void* mem) {
    return vrk_create_preproc2(a.steps(), a.contrast, a.use_curve(), a.curve_or_null(), a.use_rgb_curves(),
                               a.rgb_curves->data(), a.flags, mem);
  };
  try_preproc(in, create, vrk_xform_preproc2, vrk_set_preproc2_rgb, vrk_query_preproc2_hint);
  return 0;
}
