// Ordered dither: a scanline of a photograph's ink planes by bit mix and input width. Items are pixels of all planes.
#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "kit/dither_table.h"
#include "kit/level_sets.h"
#include "kit/photograph.h"
#include "kit/planes.h"
#include "kit/threshold_matrices.h"
#include "vrk.h"

namespace {

constexpr std::uint32_t width = 4800;

vrk::kit::bytes dither_table(unsigned planes, unsigned colour_bits, unsigned k_bits, bool in16, const char* matrices) {
  const auto matrix = vrk::kit::plane_matrices(matrices);
  std::array<vrk::kit::dither_plane, 6> record{};
  for (unsigned p = 0; p < planes; ++p) {
    vrk::kit::dither_plane& plane = record[p];
    plane.bits = p == 0 ? k_bits : colour_bits;
    plane.width = matrix[p].width;
    plane.height = matrix[p].height;
    plane.matrix = matrix[p].ranks;
    plane.level_values = vrk::kit::even_levels(std::min(1u << plane.bits, 255u), in16 ? 1023 : 255);
  }
  vrk::kit::dither_table table;
  table.planes = vrk::kit::in_table_order(record);
  return table.encode();
}

// Bytes of a picture, as samples of any plane.
std::vector<std::uint16_t> content(bool in16) {
  const vrk::kit::bytes picture = vrk::kit::photograph(width, 2);
  std::vector<std::uint16_t> src(width * 6);
  for (std::size_t i = 0; i < src.size(); ++i) {
    src[i] = in16 ? std::uint16_t(picture[i] * 257) : std::uint16_t(picture[2 * i % picture.size()] << 8 | picture[i]);
  }
  return src;
}

void dither(benchmark::State& state, unsigned planes, unsigned colour_bits, unsigned k_bits, std::uint32_t flags,
            const char* matrices) {
  const auto table = dither_table(planes, colour_bits, k_bits, (flags & VRK_IN16) != 0, matrices);
  const auto size = std::uint32_t(table.size());
  std::vector<std::uint32_t> handle(vrk_create_dither(width, size, table.data(), flags, nullptr) / 4 + 1);
  if (vrk_create_dither(width, size, table.data(), flags, handle.data()) == 0) return state.SkipWithError("refused");
  const auto src = content((flags & VRK_IN16) != 0);
  std::array<std::vector<std::uint8_t>, 6> out;
  for (auto& line : out) line.resize(width);
  vrk_start_dither_block(handle.data(), width, 0, 0);
  for (auto _ : state) {
    vrk_exec_dither(handle.data(), src.data(), out[0].data(), out[1].data(), out[2].data(), out[3].data(),
                    out[4].data(), out[5].data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * width);
}

BENCHMARK_CAPTURE(dither, planes1_bits1, 1, 1, 1, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes1_bits8, 1, 8, 8, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits1, 4, 1, 1, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits1_in16, 4, 1, 1, VRK_IN16, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits1_screens, 4, 1, 1, 0, "screens");
BENCHMARK_CAPTURE(dither, planes4_bits1_4x4, 4, 1, 1, 0, "bayer4");
BENCHMARK_CAPTURE(dither, planes4_bits1_blue_noise, 4, 1, 1, 0, "blue-noise");
BENCHMARK_CAPTURE(dither, planes4_bits2, 4, 2, 2, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits2_in16, 4, 2, 2, VRK_IN16, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits4_k1, 4, 4, 1, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes4_bits4, 4, 4, 4, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes6_bits1, 6, 1, 1, 0, "bayer16");
BENCHMARK_CAPTURE(dither, planes6_bits4, 6, 4, 4, VRK_IN16, "bayer16");

}  // namespace
