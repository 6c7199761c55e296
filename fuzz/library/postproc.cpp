#include "fuzz/library/curves.h"
#include "fuzz/library/runs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const std::uint32_t flags = in.u32(), planes = in.u8(), on = in.u8(), offset = in.u8() % 64, choices = in.u8();
  const byte_span pixels = in.section();
  const exact_memory main_table(curve_image_of(in.section(), true), choices & 1);
  std::optional<exact_memory> plane[6];
  byte_span last = in.section();
  for (auto& image : plane) {
    image.emplace(curve_image_of(last), choices & 1);
    if (const byte_span next = in.section(); !next.empty()) last = next;
  }
  const auto table = [&](unsigned p) { return choices == 255 ? nullptr : plane[p]->data(); };
  const auto create = [&](void* mem) {
    return vrk_create_postproc(planes, on & 1, main_table.data(), on & 2, table(0), on & 4, table(1), on & 8, table(2),
                               on & 16, table(3), on & 32, table(4), on & 64, table(5), flags, mem);
  };
  const handle h(create, offset);
  if (!h) return 0;
  require(vrk_query_postproc_hint(h.get()) == flags, "flags are kept");
  if (choices >> 4 == 0) h.expect_same_bytes(create);
  const postproc_samples samples((on & 1) != 0, main_table.data(), planes);
  try_runs(in, pixels, h,
           {samples.in * ((flags & VRK_IN16) != 0 ? 2 : 1), samples.out * ((flags & VRK_OUT16) != 0 ? 2 : 1)},
           [](void* handle, const void* src, const std::uint8_t*, std::uint32_t count, void* dst) {
             return vrk_xform_postproc(handle, src, count, dst);
           });
  return 0;
}
