#include "fuzz/library/runs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const std::uint32_t flags = in.u32(), layout = in.u8(), offset = in.u8() % 64, choices = in.u8();
  const std::uint32_t samples_in = in.u8();
  const exact_memory table(in.section(), choices & 1);
  const auto create = [&](void* mem) {
    return vrk_create_csc2(std::uint32_t(table.size()), table.data(), samples_in, flags, mem);
  };
  const handle h(create, offset);
  if (!h) return 0;
  if (choices >> 1 == 0) h.expect_same_bytes(create);
  const std::uint32_t kept = vrk_query_csc2_hint(h.get());
  vrk_set_csc2_rgb(h.get(), layout);
  const std::uint32_t in_samples = samples_in == 1 ? 1 : layout == 2 || layout == 3 ? 4 : 3;
  const std::uint32_t out_samples = table.data()[0] == '1' ? 1 : table.data()[9];
  try_runs(in, in.section(), h,
           {in_samples * ((kept & VRK_IN16) != 0 ? 2 : 1), out_samples * ((kept & VRK_OUT16) != 0 ? 2 : 1)},
           [](void* handle, const void* src, const std::uint8_t*, std::uint32_t count, void* dst) {
             return vrk_xform_csc2(handle, src, count, dst);
           });
  return 0;
}
