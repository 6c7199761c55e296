// Post-processing: every chain of curves and every width, and Little CMS with the same curves on the same pixels.
#include <cmath>

#include "bench/common.h"
#include "bench/inks.h"
#include "kit/curve_image.h"
#include "vrk.h"
#ifdef VRK_BENCH_LCMS2
#include <lcms2.h>
#endif

namespace vrk::bench {
namespace {

using buffer = std::vector<std::uint8_t>;

kit::curve gamma_curve(double gamma) {
  kit::curve curve{};
  for (std::size_t i = 0; i < curve.size(); ++i) {
    curve[i] = std::uint16_t(65535 * std::pow(double(i) / 1023, gamma) + 0.5);
  }
  return curve;
}

constexpr double gamma_of_plane[] = {1.2, 1.4, 1.6, 1.8, 2.0, 2.2};

struct chain {
  const char* name;
  bool main_curves, plane_curves;
  std::uint32_t flags;
  double bar;  // ratio to reach to Little CMS with one curve per plane; 0: not compared
};
constexpr chain chains[] = {{"none", false, false, 0, 0},
                            {"one-curve", true, false, 0, 3},
                            {"two-curves", true, true, 0, 2},
                            {"compose", true, true, VRK_COMPOSE, 3}};

struct widths {
  const char* name;
  unsigned in, out;
  std::uint32_t flags;
};
constexpr widths all_widths[] = {
    {"8-8", 8, 8, 0}, {"8-16", 8, 16, VRK_OUT16}, {"16-8", 16, 8, VRK_IN16}, {"16-16", 16, 16, VRK_IN16 | VRK_OUT16}};

// A picture line by line into one output line.
template <class Run>
void run_lines(benchmark::State& state, const picture& p, unsigned in_pixel_bytes, const buffer& src, buffer& dst,
               Run run) {
  for (auto _ : state) {
    for (unsigned y = 0; y < p.height; ++y) run(&src[std::size_t(y) * p.width * in_pixel_bytes], p.width, dst.data());
    benchmark::ClobberMemory();
  }
  count_pixels(state, p.pixels());
}

void postproc(benchmark::State& state, const picture& p, unsigned in, unsigned out, const chain& c, const widths& w) {
  kit::curve_image main, plane;
  for (unsigned k = 0; k < out; ++k) main.curves.push_back(gamma_curve(gamma_of_plane[k]));
  main.version = "0020";
  main.curve_count = in;
  main.output_count = out;
  plane.curves.push_back(gamma_curve(0.8));
  const kit::bytes main_image = main.encode(), plane_image = plane.encode();
  const auto create = [&](void* mem) {
    const std::uint32_t on = c.plane_curves;
    const void* const image = plane_image.data();
    return vrk_create_postproc(in, c.main_curves, main_image.data(), on, image, on, image, on, image, on, image, on,
                               image, on, image, c.flags | w.flags, mem);
  };
  buffer handle(create(nullptr)), dst(std::size_t(p.width) * out * w.out / 8);
  if (create(handle.data()) == 0) return state.SkipWithError("tables refused");
  run_lines(state, p, in * w.in / 8, ink_bytes(p, in, w.in), dst,
            [&](const void* src, unsigned n, void* to) { vrk_xform_postproc(handle.data(), src, n, to); });
}

#ifdef VRK_BENCH_LCMS2
void lcms_curves(benchmark::State& state, const picture& p, unsigned bits) {
  cmsToneCurve* curves[4];
  for (int i = 0; i < 4; ++i) curves[i] = cmsBuildGamma(nullptr, gamma_of_plane[i]);
  const cmsHPROFILE link = cmsCreateLinearizationDeviceLink(cmsSigCmykData, curves);
  const cmsUInt32Number format = bits == 8 ? TYPE_CMYK_8 : TYPE_CMYK_16;
  const cmsHTRANSFORM transform = cmsCreateTransform(link, format, nullptr, format, INTENT_PERCEPTUAL, 0);
  buffer dst(std::size_t(p.width) * 4 * bits / 8);
  run_lines(state, p, 4 * bits / 8, ink_bytes(p, 4, bits), dst,
            [&](const void* src, unsigned n, void* to) { cmsDoTransform(transform, src, to, n); });
  cmsDeleteTransform(transform);
  cmsCloseProfile(link);
  cmsFreeToneCurveTriple(curves);
  cmsFreeToneCurve(curves[3]);
}
#endif

void add(const picture& p, unsigned in, unsigned out, const chain& c, const widths& w) {
  std::string name = "postproc/" + std::string(c.name) + "/" + w.name + "/" + std::to_string(in) + "-" +
                     std::to_string(out) + "ch/" + p.name;
  benchmark::RegisterBenchmark(name.c_str(), postproc, p, in, out, c, w);
  if (c.bar != 0 && in == 4 && out == 4 && w.in == w.out)
    compare(name, "lcms/curves/" + std::to_string(w.in) + "/" + p.name, c.bar);
}

const bool registered = [] {
  for (const picture* const p : {&photographic(), &uniform_random()}) {
#ifdef VRK_BENCH_LCMS2
    for (const unsigned bits : {8u, 16u}) {
      benchmark::RegisterBenchmark(("lcms/curves/" + std::to_string(bits) + "/" + p->name).c_str(), lcms_curves, *p,
                                   bits);
    }
#endif
    for (const chain& c : chains) {
      for (const widths& w : all_widths) add(*p, 4, 4, c, w);
      if (!c.main_curves) continue;
      for (const auto& [in, out] : {std::pair{1u, 1u}, {6u, 6u}, {4u, 6u}}) add(*p, in, out, c, all_widths[0]);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vrk::bench
