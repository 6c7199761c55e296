// One curve image in every place that takes one, for all widths.
#include "fuzz/library/curves.h"

#include "fuzz/library/runs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const std::uint32_t place = in.u8() % 12, flags = in.u32(), offset = in.u8() % 32, planes = in.u8();
  const bool main_table = place == 5;
  const byte_span section = in.section(), pixels = in.section();
  const bytes made = curve_image_of(section, main_table);
  // The second converter is told how long its image is: any length will do.
  const exact_memory image(place == 4 ? byte_span(made).first(std::min<std::size_t>(made.size(), in.u16())) : made, 1);
  const void* const at = image.data();
  const auto create = [&](void* mem) -> std::uint32_t {
    const auto plane = [=](std::uint32_t p) { return place - 6 == p; };
    switch (place) {
      case 0:
        return vrk_create_preproc(nullptr, 0, 0, 1, at, 0, nullptr, flags, mem);
      case 1:
        return vrk_create_preproc(nullptr, 0, 0, 0, nullptr, 1, at, flags, mem);
      case 2:
        return vrk_create_preproc2(nullptr, 0, 1, at, 0, nullptr, flags, mem);
      case 3:
        return vrk_create_preproc2(nullptr, 0, 0, nullptr, 1, at, flags, mem);
      case 4:
        return vrk_create_csc2(std::uint32_t(image.size()), at, 1, flags, mem);
      default:
        return vrk_create_postproc(planes, main_table, at, plane(0), at, plane(1), at, plane(2), at, plane(3), at,
                                   plane(4), at, plane(5), at, flags, mem);
    }
  };
  const handle h(create, offset, place < 4 ? headers::by_size_call : headers::by_both_calls);
  if (!h) return 0;
  const std::uint32_t in_bytes = (flags & VRK_IN16) != 0 ? 2 : 1, out_bytes = (flags & VRK_OUT16) != 0 ? 2 : 1;
  if (place < 4) {
    return try_runs(in, pixels, h, {3, 3 * out_bytes, true}, place < 2 ? vrk_xform_preproc : vrk_xform_preproc2), 0;
  }
  if (place == 4) {
    // Grids need three input samples or four inks: only curves get here.
    if (image.data()[0] != '1') return 0;
    return try_runs(in, pixels, h, {in_bytes, out_bytes},
                    [](void* handle, const void* src, const std::uint8_t*, std::uint32_t count, void* dst) {
                      return vrk_xform_csc2(handle, src, count, dst);
                    }),
           0;
  }
  const postproc_samples samples(main_table, image.data(), planes);
  try_runs(in, pixels, h, {samples.in * in_bytes, samples.out * out_bytes},
           [](void* handle, const void* src, const std::uint8_t*, std::uint32_t count, void* dst) {
             return vrk_xform_postproc(handle, src, count, dst);
           });
  return 0;
}
