// Post-processing by definition, sample by sample, and what its handles are made of.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

using curve_table = std::optional<kit::curve_image>;

// A main table that counts the channels itself, as all do but those of version "0010". out: 0 for as many as in. Only
// the split of four needs curves beyond those of its input.
inline kit::curve_image counting_curves(unsigned in, unsigned out) {
  kit::curve_image image = random_curves(in == 4 ? std::max(in, out) : in);
  image.version = out == 0 ? "0011" : "0020";
  image.curve_count = in;
  image.output_count = out;
  return image;
}

// The arguments of create: called with memory, it makes the call. Images end at an unreadable page, and tables that are
// off lie in one.
struct postproc_job {
  unsigned planes = 4;
  curve_table main{};
  std::array<curve_table, 6> plane{};  // K, C, M, Y, fifth, sixth
  unsigned flags = 0;

  std::uint32_t operator()(void* mem) const {
    std::array<std::optional<guarded_copy>, 7> images;
    for (std::size_t t = 0; t < images.size(); ++t) {
      const curve_table& image = t == 0 ? main : plane[t - 1];
      images[t].emplace(image ? image->encode() : kit::bytes{});
    }
    const auto on = [&](std::size_t t) { return images[t]->size() != 0 ? 0x100u : 0; };
    const auto at = [&](std::size_t t) { return images[t]->data(); };
    return vrk_create_postproc(planes, on(0), at(0), on(1), at(1), on(2), at(2), on(3), at(3), on(4), at(4), on(5),
                               at(5), on(6), at(6), flags, mem);
  }

  bool in16() const { return (flags & VRK_IN16) != 0; }
  bool out16() const { return (flags & VRK_OUT16) != 0; }
  bool main_counts() const { return main && main->version != "0010"; }
  unsigned in() const { return main_counts() ? *main->curve_count : planes; }
  unsigned out() const { return main_counts() && main->output_count != 0 ? main->output_count : in(); }
};

// By definition, sample by sample, from the images: levels of 10 and 16 bits, no reduced curve.
struct postproc_reference {
  const postproc_job& of;

  bool copies() const {
    return !of.main && std::none_of(&of.plane[0], &of.plane[of.out()], std::mem_fn(&curve_table::has_value));
  }

  const kit::curve& main_curve(unsigned plane) const {
    const std::size_t curves = of.main_counts() ? of.out() : of.main->curves.size();
    const std::string order = curves == 1 ? "K" : curves == 4 ? "CMYK" : "C5M6YK";
    return of.main->curves[order.find(curves == 1 ? 'K' : "KCMY56"[plane])];
  }

  unsigned output(unsigned plane, unsigned sample) const {
    const auto ten_bits = [](unsigned v8) { return v8 * 4 + v8 / 64; };
    const auto out = [&](unsigned v16) { return of.out16() ? v16 : v16 / 256; };
    const unsigned level = of.in16() ? sample / 64 : ten_bits(sample);
    const curve_table& plane_curve = of.plane[plane];
    if (copies()) return out(of.in16() ? sample : sample * 257);
    if (!of.main && !plane_curve) return out(of.in16() ? level * 64 + level / 16 : sample * 257);
    if (!of.main) return out(plane_curve->curves[0][level]);
    const unsigned v16 = main_curve(plane)[level];
    if (!plane_curve) return out(v16);
    const bool by_ten_bits = of.in16() || of.out16() || (of.flags & VRK_MID10) != 0;
    return out(plane_curve->curves[0][by_ten_bits ? v16 / 64 : ten_bits(v16 / 256)]);
  }

  samples line(const samples& src) const {
    samples dst;
    for (std::size_t first = 0; first < src.size(); first += of.in()) {
      for (unsigned p = 0; p < of.out(); ++p) {
        dst.push_back(std::uint16_t(output(p, src[first + (p < of.in() ? p : p == 4 ? 1 : 2)])));
      }
    }
    return dst;
  }
};

// Every level of the input width (of words: every index) in every channel, out of step with each other.
inline samples all_levels(const postproc_job& j) {
  samples src;
  const unsigned levels = j.in16() ? 65536 : 256, step = j.in16() ? 23 : 1;
  for (unsigned v = 0; v < levels + 300 * step; v += step) {
    for (unsigned p = 0; p < j.in(); ++p) src.push_back(std::uint16_t((v + p * (levels / 5)) % levels));
  }
  return src;
}

}  // namespace vrk::test
