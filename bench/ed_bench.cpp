// Error diffusion: every kernel, packed and as dot cells, and the dither of libcupsfilters on the same planes. Rates
// count the pixels of every plane, so they are rates per plane.
#include "bench/common.h"
#include "bench/inks.h"
#include "kit/presets.h"
#include "vrk.h"
#if defined(VRK_BENCH_LIBCUPSFILTERS) && __has_include(<cups/ppd.h>)
#define VRK_BENCH_CUPS_DITHER
extern "C" {
#include <cupsfilters/driver.h>
}
#undef min
#undef max
#undef abs
#endif

namespace vrk::bench {
namespace {

using buffer = std::vector<std::uint8_t>;

struct widths {
  const char* name;
  std::uint32_t flags;
  double bar;  // ratio to the peer to reach
};
constexpr widths all_widths[] = {{"8-8", 0, 3}, {"8-10", VRK_PREC10, 2.5}, {"16-10", VRK_IN16, 2.5}};

class handle {
 public:
  handle(unsigned width, std::uint32_t flags, const kit::edpr_table& params)
      : params_(params.encode()), width_(width), flags_(flags), memory_(create(nullptr)) {
    create(memory_.data());
  }
  std::uint32_t create(void* mem) const {
    return vrk_create_ed(width_, std::uint32_t(spread_.size()), spread_.data(), std::uint32_t(params_.size()),
                         params_.data(), flags_, mem);
  }
  void* get() { return memory_.data(); }

 private:
  kit::bytes params_, spread_ = kit::ed_distribution().encode();
  unsigned width_;
  std::uint32_t flags_;
  buffer memory_;
};

void add(const std::string& name, const picture& p, unsigned planes, std::uint32_t flags, kit::edpr_table params) {
  benchmark::RegisterBenchmark(name.c_str(), [=, &p](benchmark::State& state) {
    handle h(p.width, flags, params);
    const kit::bytes src = ink_bytes(p, planes, flags & VRK_IN16 ? 16 : 8);
    buffer out(24 * std::size_t(p.width));
    std::uint8_t* lines[24];
    for (std::size_t i = 0; i < std::size(lines); ++i) lines[i] = out.data() + i * p.width;
    vrk_start_ed_block(h.get(), p.width, 0, 0);
    for (auto _ : state) {
      for (unsigned y = 0; y < p.height; ++y) vrk_exec_edx(h.get(), src.data() + y * (src.size() / p.height), lines);
      benchmark::ClobberMemory();
    }
    count_pixels(state, double(p.pixels()) * planes);
  });
}

void add_peer([[maybe_unused]] const std::string& name, [[maybe_unused]] const picture& p) {
#ifdef VRK_BENCH_CUPS_DITHER
  benchmark::RegisterBenchmark(name.c_str(), [&p](benchmark::State& state) {
    constexpr int planes = 4, top = 4095;
    std::vector<cups_lut_t> lut;  // for every intensity the dot and the error
    for (int i = 0; i <= top; ++i) lut.push_back({short(i), short(i > top / 2), i > top / 2 ? i - top : i});
    std::vector<short> src;
    for (const int v : ink_samples(p, planes)) src.push_back(short(v >> 4));
    buffer out(p.width);
    cups_dither_t* dithers[planes];
    for (auto& dither : dithers) dither = cupsDitherNew(int(p.width));
    for (auto _ : state) {
      for (unsigned y = 0; y < p.height; ++y) {
        const short* const line = src.data() + std::size_t(y) * p.width * planes;
        for (int plane = 0; plane < planes; ++plane) {
          cupsDitherLine(dithers[plane], lut.data(), line + plane, planes, out.data());
        }
      }
      benchmark::ClobberMemory();
    }
    for (auto& dither : dithers) cupsDitherDelete(dither);
    count_pixels(state, double(p.pixels()) * planes);
  });
#endif
}

const bool registered = [] {
  const kit::modulation noise = kit::fine_noise();
  for (const picture* const p : {&photographic(), &uniform_random()}) {
    const std::string of_picture = std::string("/") + p->name;
    const std::string peer = "cupsfilters/1bit" + of_picture;
    add_peer(peer, *p);
    for (const widths& w : all_widths) {
      for (const unsigned planes : {1u, 4u, 6u}) {
        const std::string stage = std::string("ed/") + w.name + "/" + std::to_string(planes) + "ch/";
        const std::string packed = stage + "1bit" + of_picture, cells = stage + "cells2x2" + of_picture;
        add(packed, *p, planes, w.flags, kit::ed_parameters(planes, 2, noise));
        add(cells, *p, planes, w.flags, kit::cell_parameters(planes, 2, 2, 5, noise));
        if (planes == 4) compare(packed, peer, w.bar);
        compare(cells, packed, 0.6);
      }
    }
    add("ed/8-8/4ch/2bit" + of_picture, *p, 4, 0, kit::ed_parameters(4, 4, noise));
    add("ed/8-8/4ch/4bit" + of_picture, *p, 4, 0, kit::ed_parameters(4, 16, noise));
    add("ed/8-8/4ch/4bit-random" + of_picture, *p, 4, VRK_RANDOM4, kit::ed_parameters(4, 5, noise));
  }
  benchmark::RegisterBenchmark("create/ed/8-10/4ch", [noise](benchmark::State& state) {
    handle h(4800, VRK_PREC10, kit::ed_parameters(4, 2, noise));
    for (auto _ : state) benchmark::DoNotOptimize(h.create(h.get()));
  })->Unit(benchmark::kMicrosecond);
  return true;
}();

}  // namespace
}  // namespace vrk::bench
