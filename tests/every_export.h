// Every export once, in the order of a real job, with tables that work. Whoever watches the calls (for allocations, for
// the stack pointer, for loading by name) passes `call`.
#pragma once

#include <numeric>
#include <vector>

#include "kit/blob.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/dither_table.h"
#include "kit/ed_tables.h"
#include "kit/planes.h"
#include "vrk.h"

namespace vrk::test {

// The tables of a small job; made before the first watched call.
struct job_tables {
  kit::bytes csc1, csc2, edtb, edpr, edpr_dots, dith, curve, curves, blob;

  job_tables() {
    kit::color_table grid;
    grid.grid = {.points = 2, .channels = 3, .samples = std::vector<std::uint16_t>(2 * 2 * 2 * 3)};
    std::iota(grid.grid.samples.begin(), grid.grid.samples.end(), std::uint16_t{0});
    csc1 = grid.encode();
    grid.grid = {.points = 2, .channels = 4, .samples = std::vector<std::uint16_t>(2 * 2 * 2 * 4, 0x8000)};
    csc2 = grid.encode();

    kit::edtb_table spread;
    for (int error = -255; error <= 255; ++error) spread.rows.push_back({std::int16_t(error)});
    edtb = spread.encode();
    kit::edpr_table levels;
    for (int plane = 0; plane < 4; ++plane) {
      levels.planes[std::size_t(plane)] = {
          .bits = 4, .level_values = {0, 255, 511, 767, 1023}, .thresholds = {128, 384, 640, 896}, .modulation = {0}};
    }
    edpr = levels.encode();
    levels.version = "0020";
    for (int plane = 0; plane < 4; ++plane) {
      levels.planes[std::size_t(plane)].scale_x = 2;
      levels.planes[std::size_t(plane)].scale_y = 2;
      levels.planes[std::size_t(plane)].patterns.assign(5, {0x8421});
    }
    edpr_dots = levels.encode();

    kit::dither_table thresholds;
    for (int plane = 0; plane < 4; ++plane) {
      thresholds.planes[std::size_t(plane)] = {
          .width = 4, .height = 2, .level_values = {0, 255}, .matrix = {0, 1, 2, 3, 4, 5, 6, 7}};
    }
    dith = thresholds.encode();

    kit::curve_image ramp;
    ramp.curves.resize(1);
    for (std::size_t i = 0; i < 1024; ++i) ramp.curves[0][i] = std::uint16_t(64 * i);
    curve = ramp.encode();
    ramp.curves.assign(4, ramp.curves[0]);
    curves = ramp.encode();

    kit::blob variants;
    variants.type = "INGM";
    variants.entries = {{.tag = "HT", .data = curve}, {.tag = "HB00", .data = curve}};
    blob = variants.encode();
  }
};

// call(name, function, arguments...) runs the export and returns what it returns. The result is the number of exports
// that failed, so that a watcher cannot count calls that did nothing.
template <class Call>
int call_every_export(Call&& call) {
#define EXPORT(name, ...) call(#name, &name __VA_OPT__(, ) __VA_ARGS__)
  static const job_tables tables;
  constexpr std::uint32_t width = 24;
  std::vector<std::uint8_t> src(width * 8, 0x90), dst(width * 16);
  std::vector<std::uint64_t> mem(1 << 17);
  std::uint8_t lines[8][64];
  std::uint8_t* const planes[] = {lines[0], lines[1], lines[2], lines[3], lines[4], lines[5], lines[6], lines[7]};
  std::uint8_t bits[6];
  const std::int16_t balance[] = {1, -1, 2};
  vrk_ht_info info;
  vrk_table_ref found{0, nullptr};
  const auto size = [](const kit::bytes& image) { return std::uint32_t(image.size()); };
  int failed = 0;
  const auto built = [&failed](std::uint32_t bytes) { failed += bytes == 0; };
  void* const handle = mem.data();

  built(EXPORT(vrk_get_version) != nullptr);
  EXPORT(vrk_cmyk_to_kcmy_8, width, src.data());
  EXPORT(vrk_cmyk_to_kcmy_16, width, src.data());

  const auto look_up = [&](auto* name, auto* function, auto... selectors) {
    return call(name, function, size(tables.blob), tables.blob.data(), &found, std::uint16_t(0), selectors...);
  };
  const std::uint16_t none = 0;
  look_up("vrk_log_csc1", &vrk_log_csc1, none, none, none, none, none);
  look_up("vrk_log_csc2", &vrk_log_csc2, none, none, none, none, none);
  look_up("vrk_log_htone", &vrk_log_htone, std::uint32_t(4));
  built(look_up("vrk_log_ingamma", &vrk_log_ingamma, std::int16_t(0)));
  built(look_up("vrk_log_ingamma2", &vrk_log_ingamma2, std::int16_t(0)));
  look_up("vrk_log_outgamma", &vrk_log_outgamma);
  look_up("vrk_log_rank", &vrk_log_rank, std::int16_t(0), std::int16_t(0));

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_preproc, balance, 1u, 1u, 1u, tables.curve.data(), 0u, nullptr, VRK_COMPOSE, at));
  }
  EXPORT(vrk_query_preproc_hint, handle);
  EXPORT(vrk_set_preproc_rgb, handle, 1u);
  built(EXPORT(vrk_xform_preproc, handle, src.data(), nullptr, width, dst.data()));
  EXPORT(vrk_free_preproc, handle);

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_preproc2, balance, 1u, 1u, tables.curve.data(), 0u, nullptr, VRK_OUT16, at));
  }
  EXPORT(vrk_query_preproc2_hint, handle);
  EXPORT(vrk_set_preproc2_rgb, handle, 2u);
  built(EXPORT(vrk_xform_preproc2, handle, src.data(), nullptr, width, dst.data()));
  EXPORT(vrk_free_preproc2, handle);

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_csc1, size(tables.csc1), tables.csc1.data(), 0u, at));
  }
  EXPORT(vrk_query_csc1_hint, handle);
  EXPORT(vrk_set_csc1_rgb, handle, 1u);
  built(EXPORT(vrk_xform_csc1, handle, src.data(), nullptr, width, dst.data()));
  EXPORT(vrk_free_csc1, handle);

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_csc2, size(tables.csc2), tables.csc2.data(), 3u, VRK_OUT16, at));
  }
  EXPORT(vrk_query_csc2_hint, handle);
  EXPORT(vrk_set_csc2_rgb, handle, 1u);
  built(EXPORT(vrk_xform_csc2, handle, src.data(), width, dst.data()));
  EXPORT(vrk_free_csc2, handle);

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_postproc, 4u, 1u, tables.curves.data(), 1u, tables.curve.data(), 0u, nullptr, 0u, nullptr,
                 0u, nullptr, 0u, nullptr, 0u, nullptr, VRK_COMPOSE, at));
  }
  EXPORT(vrk_query_postproc_hint, handle);
  built(EXPORT(vrk_xform_postproc, handle, src.data(), width, dst.data()));
  EXPORT(vrk_free_postproc, handle);

  for (const kit::bytes* const levels : {&tables.edpr, &tables.edpr_dots}) {
    for (void* const at : {static_cast<void*>(nullptr), handle}) {
      built(EXPORT(vrk_create_ed, width, size(tables.edtb), tables.edtb.data(), size(*levels), levels->data(),
                   VRK_RANDOM4, at));
    }
    built(EXPORT(vrk_query_ed_info, handle, &info));
    EXPORT(vrk_query_ed_hint, handle);
    EXPORT(vrk_query_ed_bitlen, handle, bits);
    built(EXPORT(vrk_start_ed_block, handle, width, 0u, 0u));
    if (levels == &tables.edpr) {
      built(EXPORT(vrk_exec_ed, handle, src.data(), lines[0], lines[1], lines[2], lines[3], nullptr, nullptr));
    }
    built(EXPORT(vrk_exec_edx, handle, src.data(), planes));
    EXPORT(vrk_clear_ed_buf, handle);
    EXPORT(vrk_end_ed_block, handle);
    EXPORT(vrk_free_ed, handle);
  }

  for (void* const at : {static_cast<void*>(nullptr), handle}) {
    built(EXPORT(vrk_create_dither, width, size(tables.dith), tables.dith.data(), 0u, at));
  }
  EXPORT(vrk_query_dither_hint, handle);
  built(EXPORT(vrk_query_dither_info, handle, &info));
  EXPORT(vrk_query_dither_bitlen, handle, bits);
  built(EXPORT(vrk_start_dither_block, handle, width, 0u, 0u));
  built(EXPORT(vrk_exec_dither, handle, src.data(), lines[0], lines[1], lines[2], lines[3], nullptr, nullptr));
  built(EXPORT(vrk_exec_ditherx, handle, src.data(), planes));
  EXPORT(vrk_end_dither_block, handle);
  EXPORT(vrk_free_dither, handle);
#undef EXPORT
  return failed;
}

}  // namespace vrk::test
