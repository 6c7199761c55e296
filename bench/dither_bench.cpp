// Ordered dither: every mix of bits that has its own kernel, some that have none, and the ordered dither of Gutenprint
// on the same planes.
#include <utility>

#include "bench/common.h"
#include "bench/inks.h"
#include "kit/dither_table.h"
#include "kit/level_sets.h"
#include "kit/planes.h"
#include "kit/threshold_matrices.h"
#include "vrk.h"
#ifdef VRK_BENCH_GUTENPRINT
#include <gutenprint/gutenprint.h>

#include <gutenprint/dither.h>
#endif

namespace vrk::bench {
namespace {

struct mix {
  const char* name;
  unsigned planes, colour_bits, k_bits;
};
constexpr mix mixes[] = {{"1ch-k1", 1, 0, 1},   {"1ch-k2", 1, 0, 2},   {"1ch-k4", 1, 0, 4},   {"1ch-k8", 1, 0, 8},
                         {"4ch-k1c1", 4, 1, 1}, {"4ch-k1c2", 4, 2, 1}, {"4ch-k2c2", 4, 2, 2}, {"4ch-k1c4", 4, 4, 1},
                         {"4ch-k2c4", 4, 4, 2}, {"4ch-k4c4", 4, 4, 4}, {"4ch-k8c8", 4, 8, 8}, {"6ch-k1c1", 6, 1, 1},
                         {"6ch-k2c2", 6, 2, 2}, {"6ch-k4c4", 6, 4, 4}};

kit::bytes table_of(const mix& m, bool in16, const char* matrix_name) {
  const kit::matrix_set matrices = kit::plane_matrices(matrix_name);
  std::array<kit::dither_plane, 6> record{};
  for (unsigned p = 0; p < m.planes; ++p) {
    const unsigned bits = p == 0 ? m.k_bits : m.colour_bits;
    record[p] = {matrices[p].width,
                 matrices[p].height,
                 {},
                 bits,
                 kit::even_levels(std::min(1u << bits, 255u), in16 ? 1023 : 255),
                 matrices[p].ranks};
  }
  kit::dither_table table;
  table.planes = kit::in_table_order(record);
  return table.encode();
}

void dither(benchmark::State& state, const picture& p, const mix& m, unsigned bits, const char* matrix_name) {
  const kit::bytes table = table_of(m, bits == 16, matrix_name), src = ink_bytes(p, m.planes, bits);
  const auto create = [&](void* mem) {
    return vrk_create_dither(p.width, std::uint32_t(table.size()), table.data(), bits == 16 ? VRK_IN16 : 0, mem);
  };
  std::vector<std::uint8_t> handle(create(nullptr));
  if (create(handle.data()) == 0) return state.SkipWithError("table refused");
  std::array<std::vector<std::uint8_t>, 6> lines;
  std::array<std::uint8_t*, 6> out{};
  for (unsigned r = 0; r < m.planes; ++r) {
    lines[r].resize(p.width);
    out[r] = lines[r].data();
  }
  const std::size_t line_bytes = src.size() / p.height;
  for (auto _ : state) {
    vrk_start_dither_block(handle.data(), p.width, 0, 0);
    for (unsigned y = 0; y < p.height; ++y) vrk_exec_ditherx(handle.data(), &src[y * line_bytes], out.data());
    benchmark::ClobberMemory();
  }
  count_pixels(state, p.pixels());
}

#ifdef VRK_BENCH_GUTENPRINT
// Its "Ordered" algorithm with its standard matrix, four planes of one bit. Input is 16-bit.
void gutenprint_ordered(benchmark::State& state, const picture& p) {
  static int width;
  width = int(p.width);
  stp_init();
  stp_vars_t* const vars = stp_vars_create();
  stp_set_string_parameter(vars, "DitherAlgorithm", "Ordered");
  stp_image_t image{};
  image.width = [](stp_image_t*) { return width; };
  stp_dither_init(vars, &image, width, 600, 600);
  std::array<std::vector<std::uint8_t>, 4> lines;
  const double one_dot = 1;
  for (unsigned r = 0; r < lines.size(); ++r) {
    lines[r].resize(p.width);
    stp_dither_add_channel(vars, lines[r].data(), r, 0);
    stp_dither_set_inks_simple(vars, int(r), 1, &one_dot, 1, 1);
  }
  const std::vector<std::uint16_t> src = ink_samples(p, 4);
  for (auto _ : state) {
    for (unsigned y = 0; y < p.height; ++y) {
      stp_dither_internal(vars, int(y), &src[std::size_t(y) * p.width * 4], 0, 0, nullptr);
    }
    benchmark::ClobberMemory();
  }
  stp_vars_destroy(vars);
  count_pixels(state, p.pixels());
}
#endif

const bool registered = [] {
  for (const picture* const p : {&photographic(), &uniform_random()}) {
    const std::string peer = std::string("gutenprint/ordered/4ch/") + p->name;
#ifdef VRK_BENCH_GUTENPRINT
    benchmark::RegisterBenchmark(peer.c_str(), gutenprint_ordered, *p);
#endif
    for (const mix& m : mixes) {
      for (const unsigned bits : {8u, 16u}) {
        const std::string name = std::string(bits == 8 ? "dither/8/" : "dither/16/") + m.name + "/" + p->name;
        benchmark::RegisterBenchmark(name.c_str(), dither, *p, m, bits, "bayer16");
        if (m.planes == 4) compare(name, peer, m.colour_bits == 1 ? 2 : 1);
      }
    }
    for (const char* const matrix : {"bayer4", "screens", "blue-noise"}) {
      const std::string name = std::string("dither/8/4ch-k1c1-") + matrix + "/" + p->name;
      benchmark::RegisterBenchmark(name.c_str(), dither, *p, mixes[4], 8u, matrix);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vrk::bench
