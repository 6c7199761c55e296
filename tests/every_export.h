// Every export once, in the order of a real job, with tables that work. Whoever watches the calls (for allocations, for
// the stack pointer, for loading by name) passes `call`.
#pragma once

#include <optional>
#include <vector>

#include "kit/blob.h"
#include "kit/color_grids.h"
#include "kit/presets.h"
#include "kit/tone_curves.h"
#include "tests/guard.h"
#include "vrk.h"

namespace vrk::test {

// The tables of a small job; made before the first watched call. Their five levels have random codes.
struct job_tables {
  kit::bytes csc1 = kit::color_table{.grid = kit::identity_grid(2)}.encode();
  kit::bytes csc2 = kit::ink_table(4, 2).encode();
  kit::bytes edtb = kit::ed_distribution().encode();
  kit::bytes edpr = kit::ed_parameters(4, 5).encode();
  kit::bytes edpr_dots = kit::cell_parameters(4, 2, 2, 5).encode();
  kit::bytes dith = kit::dither_parameters(4, 2, "bayer4").encode();
  kit::bytes curve = kit::curve_image{.curves = {kit::gamma_curve(2)}}.encode();
  kit::bytes curves = kit::curve_image{.curves = std::vector(4, kit::gamma_curve(2))}.encode();
  kit::bytes blob = kit::blob{.type = "INGM", .entries = {{"HT", curve}, {"HB00", curve}}}.encode();
};

// call(name, function, arguments...) runs the export and returns what it returns. The result is the number of exports
// that failed, so that a watcher cannot count calls that did nothing. Handles have as much memory as they ask for,
// `offset` past a 32-byte boundary.
template <class Call>
int call_every_export(Call&& call, std::size_t offset = 0) {
#define EXPORT(name) #name, &name
  static const job_tables tables;
  constexpr std::uint32_t width = 24;
  std::vector<std::uint8_t> src(width * 8, 0x90), dst(width * 16);
  std::optional<fenced_block> mem;
  std::uint8_t lines[8][64];
  std::uint8_t* const planes[] = {lines[0], lines[1], lines[2], lines[3], lines[4], lines[5], lines[6], lines[7]};
  std::uint8_t bits[6];
  const std::int16_t balance[] = {1, -1, 2};
  vrk_ht_info info;
  vrk_table_ref found{0, nullptr};
  const auto size = [](const kit::bytes& image) { return std::uint32_t(image.size()); };
  int failed = 0;
  const auto built = [&failed](std::uint32_t bytes) { failed += bytes == 0; };
  void* handle = nullptr;
  const auto create = [&](auto* name, auto* function, auto... arguments) {
    const std::uint32_t needed = call(name, function, arguments..., handle = nullptr);
    built(needed);
    if (mem) failed += !mem->fences_intact();
    mem.emplace(needed, offset);
    handle = mem->data();
    built(call(name, function, arguments..., handle));
  };

  built(call(EXPORT(vrk_get_version)) != nullptr);
  call(EXPORT(vrk_cmyk_to_kcmy_8), width, src.data());
  call(EXPORT(vrk_cmyk_to_kcmy_16), width, src.data());

  const auto look_up = [&](auto* name, auto* function, auto... selectors) {
    return call(name, function, size(tables.blob), tables.blob.data(), &found, std::uint16_t(0), selectors...);
  };
  const std::uint16_t none = 0;
  look_up(EXPORT(vrk_log_csc1), none, none, none, none, none);
  look_up(EXPORT(vrk_log_csc2), none, none, none, none, none);
  look_up(EXPORT(vrk_log_htone), std::uint32_t(4));
  built(look_up(EXPORT(vrk_log_ingamma), std::int16_t(0)));
  built(look_up(EXPORT(vrk_log_ingamma2), std::int16_t(0)));
  look_up(EXPORT(vrk_log_outgamma));
  look_up(EXPORT(vrk_log_rank), std::int16_t(0), std::int16_t(0));

  create(EXPORT(vrk_create_preproc), balance, 1u, 1u, 1u, tables.curve.data(), 0u, nullptr, VRK_COMPOSE);
  call(EXPORT(vrk_query_preproc_hint), handle);
  call(EXPORT(vrk_set_preproc_rgb), handle, 1u);
  built(call(EXPORT(vrk_xform_preproc), handle, src.data(), nullptr, width, dst.data()));
  call(EXPORT(vrk_free_preproc), handle);

  create(EXPORT(vrk_create_preproc2), balance, 1u, 1u, tables.curve.data(), 0u, nullptr, VRK_OUT16);
  call(EXPORT(vrk_query_preproc2_hint), handle);
  call(EXPORT(vrk_set_preproc2_rgb), handle, 2u);
  built(call(EXPORT(vrk_xform_preproc2), handle, src.data(), nullptr, width, dst.data()));
  call(EXPORT(vrk_free_preproc2), handle);

  create(EXPORT(vrk_create_csc1), size(tables.csc1), tables.csc1.data(), 0u);
  call(EXPORT(vrk_query_csc1_hint), handle);
  call(EXPORT(vrk_set_csc1_rgb), handle, 1u);
  built(call(EXPORT(vrk_xform_csc1), handle, src.data(), nullptr, width, dst.data()));
  call(EXPORT(vrk_free_csc1), handle);

  create(EXPORT(vrk_create_csc2), size(tables.csc2), tables.csc2.data(), 3u, VRK_OUT16);
  call(EXPORT(vrk_query_csc2_hint), handle);
  call(EXPORT(vrk_set_csc2_rgb), handle, 1u);
  built(call(EXPORT(vrk_xform_csc2), handle, src.data(), width, dst.data()));
  call(EXPORT(vrk_free_csc2), handle);

  create(EXPORT(vrk_create_postproc), 4u, 1u, tables.curves.data(), 1u, tables.curve.data(), 0u, nullptr, 0u, nullptr,
         0u, nullptr, 0u, nullptr, 0u, nullptr, VRK_COMPOSE);
  call(EXPORT(vrk_query_postproc_hint), handle);
  built(call(EXPORT(vrk_xform_postproc), handle, src.data(), width, dst.data()));
  call(EXPORT(vrk_free_postproc), handle);

  for (const kit::bytes* const levels : {&tables.edpr, &tables.edpr_dots}) {
    create(EXPORT(vrk_create_ed), width, size(tables.edtb), tables.edtb.data(), size(*levels), levels->data(),
           VRK_RANDOM4);
    built(call(EXPORT(vrk_query_ed_info), handle, &info));
    call(EXPORT(vrk_query_ed_hint), handle);
    call(EXPORT(vrk_query_ed_bitlen), handle, bits);
    built(call(EXPORT(vrk_start_ed_block), handle, width, 0u, 0u));
    if (levels == &tables.edpr) {
      built(call(EXPORT(vrk_exec_ed), handle, src.data(), lines[0], lines[1], lines[2], lines[3], nullptr, nullptr));
    }
    built(call(EXPORT(vrk_exec_edx), handle, src.data(), planes));
    call(EXPORT(vrk_clear_ed_buf), handle);
    call(EXPORT(vrk_end_ed_block), handle);
    call(EXPORT(vrk_free_ed), handle);
  }

  create(EXPORT(vrk_create_dither), width, size(tables.dith), tables.dith.data(), 0u);
  call(EXPORT(vrk_query_dither_hint), handle);
  built(call(EXPORT(vrk_query_dither_info), handle, &info));
  call(EXPORT(vrk_query_dither_bitlen), handle, bits);
  built(call(EXPORT(vrk_start_dither_block), handle, width, 0u, 0u));
  built(call(EXPORT(vrk_exec_dither), handle, src.data(), lines[0], lines[1], lines[2], lines[3], nullptr, nullptr));
  built(call(EXPORT(vrk_exec_ditherx), handle, src.data(), planes));
  call(EXPORT(vrk_end_dither_block), handle);
  call(EXPORT(vrk_free_dither), handle);
#undef EXPORT
  return failed + !mem->fences_intact();
}

}  // namespace vrk::test
