// Error diffusion, ordered dither, and pages that pass all stages.
#include <algorithm>

#include "csc/csc2_handle.h"
#include "digest/digest_entry.h"
#include "halftone/dither/dither_handle.h"
#include "kit/curve_image.h"
#include "kit/planes.h"
#include "kit/presets.h"
#include "postproc/postproc_handle.h"

namespace vrk::digest {

namespace {

constexpr std::uint32_t lines = 8;

// Buffers for the packed lines of all planes, in the order in which the exports take them.
struct output_lines {
  std::vector<std::uint8_t*> line;

  output_lines(digest_entry& entry, const vrk_ht_info& info) {
    for (unsigned plane = 0; plane < 6; ++plane) {
      for (unsigned i = 0; i < info.plane_scale[plane].scale_y; ++i)
        line.push_back(entry.output(info.line_bytes[plane]));
    }
    line.resize(24);
  }
};

kit::modulation threshold_noise() {
  kit::modulation noisy{.width = 5, .height = 4, .column_shift = 2, .row_shift = 1};
  for (std::size_t plane = 0; plane < noisy.planes.size(); ++plane) {
    for (const std::uint8_t v : noise(20, plane + 3)) noisy.planes[plane].push_back(std::int8_t(v / 4 - 32));
  }
  return noisy;
}

// Two blocks of half the lines each: the first of the whole width, the second without the first 13 columns.
template <class Start, class Exec, class End>
void run_blocks(digest_entry& entry, Start start, Exec exec, End end) {
  entry.run(lines, [&](std::uint32_t y) {
    if (y == 0) start(chosen.width, 0, 0);
    if (y == lines / 2) {
      end();
      start(chosen.width - 13, 13, y);
    }
    exec(y);
    if (y == lines - 1) end();
  });
}

void* build_ed(digest_entry& entry, const kit::edpr_table& levels, std::uint32_t flags) {
  const kit::bytes edtb = kit::ed_distribution("fan").encode(), edpr = levels.encode();
  return entry.build([&](void* mem) {
    return vrk_create_ed(chosen.width, std::uint32_t(edtb.size()), edtb.data(), std::uint32_t(edpr.size()), edpr.data(),
                         flags, mem);
  });
}

void diffuse(const std::string& name, const kit::edpr_table& levels, std::uint32_t planes, std::uint32_t flags) {
  digest_entry entry(with_flags(name, flags));
  if (!entry.wanted()) return;
  const pixel_bytes src = picture(chosen.width, planes * ((flags & VRK_IN16) != 0 ? 2 : 1));
  void* const h = build_ed(entry, levels, flags);
  vrk_ht_info info;
  entry.add(vrk_query_ed_info(h, &info));
  entry.add(info.same_line_bytes * 4 + info.dot_expansion * 2 + info.same_scale);
  const output_lines out(entry, info);
  run_blocks(
      entry, [h](auto... block) { vrk_start_ed_block(h, block...); },
      [&](std::uint32_t y) {
        auto* const* const line = out.line.data();
        if (info.dot_expansion != 0 || y % 2 != 0) {
          vrk_exec_edx(h, src.data(), line);
        } else {
          vrk_exec_ed(h, src.data(), line[0], line[1], line[2], line[3], line[4], line[5]);
        }
      },
      [h] { vrk_end_ed_block(h); });
}

void error_diffusion() {
  for (const std::uint32_t planes : {1u, 4u, 6u}) {
    for (const std::uint32_t precision : {0u, VRK_PREC10, VRK_IN16}) {
      for (const unsigned levels : {2, 3, 4, 5, 6, 16}) {
        for (const std::uint32_t codes : {0u, VRK_RANDOM4, VRK_K_CODE3}) {
          diffuse("ed " + std::to_string(planes) + " levels " + std::to_string(levels),
                  kit::ed_parameters(planes, levels, threshold_noise()), planes, precision | codes);
        }
      }
      for (const unsigned scale_x : {1, 2, 4}) {
        for (const unsigned scale_y : {1, 2, 3, 4}) {
          const unsigned levels = scale_x * scale_y + 1;
          diffuse("edx " + std::to_string(planes) + " cells " + std::to_string(scale_x) + "x" + std::to_string(scale_y),
                  kit::cell_parameters(planes, scale_x, scale_y, levels, threshold_noise()), planes, precision);
        }
      }
    }
  }
}

// K may have another number of levels than the colours, and so other bits.
struct dither_levels {
  unsigned k, colors;
};

void dither(const std::string& matrix, std::uint32_t planes, dither_levels levels, std::uint32_t flags) {
  digest_entry entry(with_flags("dither " + std::to_string(planes) + " levels " + std::to_string(levels.k) + " and " +
                                    std::to_string(levels.colors) + " " + matrix,
                                flags));
  if (!entry.wanted()) return;
  const bool in16 = (flags & VRK_IN16) != 0;
  kit::dither_table parameters = kit::dither_parameters(planes, levels.colors, matrix, in16);
  const std::size_t k = kit::table_position[0];
  parameters.planes[k] = kit::dither_parameters(1, levels.k, matrix, in16).planes[k];
  const kit::bytes table = parameters.encode();
  const pixel_bytes src = picture(chosen.width, planes * (in16 ? 2 : 1));
  void* const h = entry.build<dither_handle>([&](void* mem) {
    return vrk_create_dither(chosen.width, std::uint32_t(table.size()), table.data(), flags, mem);
  });
  vrk_ht_info info;
  entry.add(vrk_query_dither_info(h, &info));
  const output_lines out(entry, info);
  run_blocks(
      entry, [h](auto... block) { vrk_start_dither_block(h, block...); },
      [&](std::uint32_t y) {
        auto* const* const line = out.line.data();
        if (y % 2 != 0) {
          vrk_exec_ditherx(h, src.data(), line);
        } else {
          vrk_exec_dither(h, src.data(), line[0], line[1], line[2], line[3], line[4], line[5]);
        }
      },
      [h] { vrk_end_dither_block(h); });
}

void ordered_dither() {
  constexpr dither_levels level_mixes[] = {{2, 2}, {3, 3},  {4, 4},  {16, 16}, {200, 200},
                                           {2, 3}, {2, 16}, {3, 16}, {16, 2},  {3, 200}};
  for (const std::uint32_t planes : {1u, 4u, 6u}) {
    for (const dither_levels levels : level_mixes) {
      for (const std::uint32_t flags : {0u, VRK_IN16, VRK_K_CODE3, VRK_IN16 | VRK_K_CODE3}) {
        for (const char* matrix : {"bayer8", "screens"}) dither(matrix, planes, levels, flags);
      }
    }
  }
}

// A page through all stages: adjusted, converted to four inks, split into six, diffused.
void whole_page(const std::string& name, std::uint32_t samples) {
  digest_entry entry("page " + name);
  if (!entry.wanted()) return;
  const kit::bytes grid = kit::ink_table(4).encode(), split = kit::split_curves().encode();
  void* const pre = entry.build([&](void* mem) {
    return vrk_create_preproc(nullptr, 1, 2, 0, nullptr, 0, nullptr, (samples & VRK_OUT16) | VRK_COMPOSE, mem);
  });
  void* const csc = entry.build<csc2_handle>(
      [&](void* mem) { return vrk_create_csc2(std::uint32_t(grid.size()), grid.data(), 3, samples, mem); });
  void* const post = entry.build<postproc_handle>([&](void* mem) {
    return vrk_create_postproc(4, 1, split.data(), 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                               nullptr, samples | VRK_COMPOSE, mem);
  });
  void* const ed = build_ed(entry, kit::ed_parameters(6, 2, threshold_noise()), samples & VRK_IN16);
  vrk_ht_info info;
  vrk_query_ed_info(ed, &info);
  const output_lines out(entry, info);
  const std::size_t pixels = chosen.width;
  const pixel_bytes src = picture(chosen.width * lines, 3);
  pixel_bytes adjusted(pixels * 6), four(pixels * 8), six(pixels * 12);
  entry.run(lines, [&](std::uint32_t y) {
    if (y == 0) vrk_start_ed_block(ed, chosen.width, 0, 0);
    vrk_xform_preproc(pre, src.data() + y * pixels * 3, nullptr, chosen.width, adjusted.data());
    vrk_xform_csc2(csc, adjusted.data(), chosen.width, four.data());
    vrk_xform_postproc(post, four.data(), chosen.width, six.data());
    vrk_exec_edx(ed, six.data(), out.line.data());
    if (y == lines - 1) vrk_end_ed_block(ed);
  });
}

}  // namespace

void halftone_entries() {
  error_diffusion();
  ordered_dither();
  whole_page("8 bits", 0);
  whole_page("16 bits", VRK_IN16 | VRK_OUT16);
}

}  // namespace vrk::digest
