#include "fuzz/library/runs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const std::uint32_t flags = in.u32(), layout = in.u8(), offset = in.u8() % 64, choices = in.u8();
  const exact_memory table(in.section(), choices & 1);
  const auto create = [&](void* mem) { return vrk_create_csc1(std::uint32_t(table.size()), table.data(), flags, mem); };
  const handle h(create, offset);
  if (!h) return 0;
  if (choices >> 1 == 0) h.expect_same_bytes(create);
  const std::uint32_t kept = vrk_query_csc1_hint(h.get());
  vrk_set_csc1_rgb(h.get(), layout);
  const std::uint8_t* const rule = table.data() + 4;
  const bool mono = std::memcmp(rule, "gray", 4) == 0 || std::memcmp(rule, "blck", 4) == 0;
  const std::uint32_t samples = layout == 2 || layout == 3 ? 4 : 3;
  try_runs(in, in.section(), h,
           {samples * ((kept & VRK_IN16) != 0 ? 2 : 1), (mono ? 1 : samples) * ((kept & VRK_OUT16) != 0 ? 2 : 1), true},
           vrk_xform_csc1);
  return 0;
}
