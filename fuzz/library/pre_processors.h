// Both pre-processors, which take nearly the same arguments.
#pragma once

#include <array>

#include "fuzz/library/curves.h"
#include "fuzz/library/runs.h"

namespace vrk::fuzz {

struct preproc_arguments {
  explicit preproc_arguments(input& in)
      : flags(in.u32()), switches(in.u8()), lift(in.u8()), contrast(in.u8()), layout(in.u8()), offset(in.u8() % 64) {
    for (std::int16_t& step : balance) step = std::int16_t(in.u16());
    const bytes one = curve_image_of(in.section()), three = curve_image_of(in.section());
    curve.emplace(one, switches >> 4 & 1), rgb_curves.emplace(three, switches >> 5 & 1);
  }
  const std::int16_t* steps() const { return (switches & 1) != 0 ? balance.data() : nullptr; }
  std::uint32_t use_curve() const { return switches & 2; }
  std::uint32_t use_rgb_curves() const { return switches & 4; }
  const void* curve_or_null() const { return (switches & 64) != 0 ? nullptr : curve->data(); }

  std::uint32_t flags, switches, lift, contrast, layout;
  std::size_t offset;
  std::array<std::int16_t, 3> balance;
  std::optional<exact_memory> curve, rgb_curves;
};

template <class Create>
void try_preproc(input& in, Create create, decltype(vrk_xform_preproc) transform, decltype(vrk_set_preproc_rgb) set,
                 decltype(vrk_query_preproc_hint) query) {
  const preproc_arguments arguments(in);
  const auto with_arguments = [&](void* mem) { return create(arguments, mem); };
  const handle h(with_arguments, arguments.offset, headers::by_size_call);
  if (!h) return;
  require(query(h.get()) == (arguments.flags & ~VRK_IN16), "flags are kept without IN16");
  if (in.u8() % 8 == 0) h.expect_same_bytes(with_arguments);
  set(h.get(), arguments.layout % 8);
  const std::uint32_t samples = arguments.layout % 8 < 2 ? 3 : 4, width = (arguments.flags & VRK_OUT16) != 0 ? 2 : 1;
  try_runs(in, in.section(), h, {samples, samples * width, true}, transform);
}

}  // namespace vrk::fuzz
