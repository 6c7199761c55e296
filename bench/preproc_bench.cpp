// The pre-processors: the whole chain of stages, composed or not, at every width and layout, and Little CMS with one
// tone curve per channel on the same pixels.
#include "bench/common.h"
#include "kit/tone_curves.h"
#include "vrk.h"
#ifdef VRK_BENCH_LCMS2
#include <lcms2.h>
#endif

namespace vrk::bench {
namespace {

using buffer = std::vector<std::uint8_t>;

struct form {
  const char* name;
  std::uint32_t flags;
};
constexpr form forms[] = {{"stages/8-8", 0},
                          {"stages/8-10-8", VRK_MID10},
                          {"stages/8-16", VRK_OUT16},
                          {"compose/8-8", VRK_COMPOSE},
                          {"compose/8-16", VRK_COMPOSE | VRK_OUT16}};

// The whole picture, line by line into one output line. Layout 0: three samples a pixel, 8-bit input.
template <class Run>
void run_lines(benchmark::State& state, const picture& p, Run run) {
  buffer dst(std::size_t{p.width} * 3 * 2);
  for (auto _ : state) {
    for (unsigned y = 0; y < p.height; ++y) run(&p.rgb8[std::size_t{y} * p.width * 3], p.width, dst.data());
    benchmark::ClobberMemory();
  }
  count_pixels(state, p.pixels());
}

void preproc(benchmark::State& state, const picture& p, const form& f) {
  const std::int16_t balance[] = {1, -1, 2};
  const kit::bytes curve = kit::curve_image{.curves = {kit::gamma_curve(1.2)}}.encode();
  const auto create = [&](void* mem) {
    return vrk_create_preproc(balance, 1, 1, 1, curve.data(), 0, nullptr, f.flags, mem);
  };
  buffer handle(create(nullptr));
  if (create(handle.data()) == 0) return state.SkipWithError("curve refused");
  run_lines(state, p,
            [&](const void* src, unsigned n, void* dst) { vrk_xform_preproc(handle.data(), src, nullptr, n, dst); });
}

void preproc_create(benchmark::State& state) {
  const std::int16_t balance[] = {1, -1, 2};
  const auto create = [&](void* mem) {
    return vrk_create_preproc(balance, 1, 1, 0, nullptr, 0, nullptr, VRK_COMPOSE, mem);
  };
  buffer handle(create(nullptr));
  for (auto _ : state) benchmark::DoNotOptimize(create(handle.data()));
}
BENCHMARK(preproc_create)->Name("create/preproc/compose")->Unit(benchmark::kMicrosecond);

#ifdef VRK_BENCH_LCMS2
void lcms_rgb_curves(benchmark::State& state, const picture& p) {
  cmsToneCurve* curves[3];
  for (int i = 0; i < 3; ++i) curves[i] = cmsBuildGamma(nullptr, 1.2 + 0.2 * i);
  const cmsHPROFILE link = cmsCreateLinearizationDeviceLink(cmsSigRgbData, curves);
  const cmsHTRANSFORM transform =
      cmsCreateTransform(link, TYPE_RGB_8, nullptr, TYPE_RGB_8, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
  run_lines(state, p, [&](const void* src, unsigned n, void* dst) { cmsDoTransform(transform, src, dst, n); });
  cmsDeleteTransform(transform);
  cmsCloseProfile(link);
  cmsFreeToneCurveTriple(curves);
}
#endif

const bool registered = [] {
  for (const picture* const p : {&photographic(), &uniform_random()}) {
    const std::string peer = std::string("lcms/rgb-curves/8/") + p->name;
#ifdef VRK_BENCH_LCMS2
    benchmark::RegisterBenchmark(peer.c_str(), lcms_rgb_curves, *p);
#endif
    for (const form& f : forms) {
      const std::string name = std::string("preproc/") + f.name + "/" + p->name;
      benchmark::RegisterBenchmark(name.c_str(), preproc, *p, f);
      compare(name, peer, 3);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vrk::bench
