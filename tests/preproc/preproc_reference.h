// Both pre-processors by definition, one pixel at a time, and what they are made of.
#pragma once

#include <array>
#include <cmath>
#include <optional>

#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

constexpr std::uint32_t preproc_wide_flags = VRK_OUT16 | VRK_MID10 | VRK_COMPOSE;

// The arguments of either create function: called with memory, it makes the call. Images end at an unreadable page, and
// those that are off lie in one.
struct preproc_settings {
  bool second = false;
  std::optional<std::array<std::int16_t, 3>> balance{};  // the second takes the first two as its control values
  int lift = 0, contrast = 0;                            // the second has no lift
  std::optional<kit::curve_image> curve{}, rgb_curves{};
  std::uint32_t flags = 0;

  std::uint32_t operator()(void* mem) const {
    const std::int16_t* const steps = balance ? balance->data() : nullptr;
    const auto lift_word = std::uint32_t(lift), contrast_word = std::uint32_t(contrast);
    guarded_copy one(curve ? curve->encode() : kit::bytes{}), rgb(rgb_curves ? rgb_curves->encode() : kit::bytes{});
    const std::uint32_t one_on = one.size(), rgb_on = rgb.size();
    return second ? vrk_create_preproc2(steps, contrast_word, one_on, one.data(), rgb_on, rgb.data(), flags, mem)
                  : vrk_create_preproc(steps, lift_word, contrast_word, one_on, one.data(), rgb_on, rgb.data(), flags,
                                       mem);
  }
  // mask: empty for none.
  kit::bytes transformed(handle& h, unsigned layout, const kit::bytes& src, const kit::bytes& mask = {}) const {
    const auto pixels = std::uint32_t(src.size() / (layout < 2 ? 3 : 4));
    guarded_copy readable(mask);
    const std::uint8_t* const bits = mask.empty() ? nullptr : readable.data();
    (second ? vrk_set_preproc2_rgb : vrk_set_preproc_rgb)(h.get(), layout);
    return h.line(src, src.size() * (flags & VRK_OUT16 ? 2 : 1), [&](void* handle, auto* in, auto* out) {
      return (second ? vrk_xform_preproc2 : vrk_xform_preproc)(handle, in, bits, pixels, out);
    });
  }
};

// Every combination of stages, with steps that move the tables well.
inline std::vector<preproc_settings> every_preproc_chain(std::uint32_t flags) {
  std::vector<preproc_settings> all;
  for (int bits = 0; bits < 48; ++bits) {
    preproc_settings s{.second = bits >= 32, .flags = flags};
    if (bits & 1) s.balance = {3, -5, -1};
    if (bits & 2) s.contrast = bits & 4 ? -3 : 2;
    if (bits & 4) s.curve = random_curves(1, 2);
    if (bits & 8) s.rgb_curves = random_curves(3);
    if (bits & 16) s.lift = bits & 2 ? -7 : 4;
    all.push_back(s);
  }
  return all;
}

// What functions of the standard library make of an entry; where its formula comes close to the next number, the
// library may have that one.
struct tone_entry {
  int v;
  bool near_tie;

  static tone_entry of(double exact, bool near_tie = false) {
    return {int(exact), near_tie || std::abs(exact - std::round(exact)) < 1e-9};
  }
};

template <class Displacement>
std::vector<tone_entry> pushed_diagonal(int max, int count, Displacement d) {
  const double dx = 1.0 / (count - 1), du = dx * 0.03333333333333333;
  std::vector<tone_entry> entries;
  bool near_tie = false;
  for (double u = 0, x = 0; int(entries.size()) < count; u = u + du) {
    const double side = d(u < 0 ? 0 : u > 1 ? 1 : u), beyond = u - 0.7071067812 * side - x;
    near_tie = near_tie || std::abs(beyond) < 1e-12;
    if (beyond < 0) continue;
    const double y = u + 0.7071067812 * side;
    entries.push_back(tone_entry::of((y < 0 ? 0 : y > 1 ? 1 : y) * max + 0.5, near_tie));
    x = x + dx;
    near_tie = false;
  }
  return entries;
}

struct preproc_reference {
  preproc_settings s;
  bool wide = (s.flags & preproc_wide_flags) != 0;
  std::array<std::vector<tone_entry>, 3> balance{};
  std::vector<tone_entry> lift{}, contrast{};

  explicit preproc_reference(const preproc_settings& of) : s(of) {
    const int max = wide ? 1023 : 255, lift_step = std::int8_t(s.lift), n = std::int8_t(s.contrast);
    for (std::size_t c = 0; s.balance && c < 3; ++c) {
      const double unit = s.second ? 0.0196078431372549 : 0.0392156862745098;
      const int step = s.second ? grid_steps((*s.balance)[0], (*s.balance)[1])[c] : (*s.balance)[c];
      const double a = (step * unit / std::sqrt(2.0)) / (1.0 - 2.0 * std::exp(-5.0));
      balance[c] = pushed_diagonal(
          max, 256, [a](double at) { return a * (1.0 - std::exp(-10.0 * at) - std::exp(-10.0 * (1.0 - at))); });
    }
    if (lift_step != 0) {
      const double a = lift_step * 0.05 / std::sqrt(2.0);
      lift = pushed_diagonal(max, max + 1,
                             [a](double at) { return a * at * (1.0 - std::exp(-4.0 * (1.0 - 2.0 * (at - 0.5)))); });
    }
    const double away = 1.0 + 0.4 * std::abs(n), half = wide ? 511 : 127;
    const double g = !s.second ? std::max(n, -5) * 0.2 + 1.0 : n > 0 ? away : 1.0 / away;
    const double scale = wide ? 0.0019569471624266144 : 0.007874015748031496;
    for (int i = 0; n != 0 && i <= max; ++i) {
      const double bend = half * std::pow((i <= half ? i : max - i) * scale, g);
      contrast.push_back(tone_entry::of(i <= half ? bend : max - bend));
    }
  }

  // The lesser control gives way to the greater; where they pull G apart, it moves by what is left of them.
  static std::array<int, 3> grid_steps(int a, int b) {
    a = std::clamp(a, -5, 5), b = std::clamp(b, -5, 5);
    const auto step = [&](int row) {
      if (std::abs(a) <= std::abs(row)) return -row;
      return a * row >= 0 ? -a : -a - 2 * row;
    };
    return {a, step(b), step(-b)};
  }

  struct value {
    int v;
    bool is_10_bits;
    int in_10_bits() const { return is_10_bits ? v : v * 4 + v / 64; }
  };

  // `channel` is 0, 1, 2 for R, G, B.
  value chain(std::size_t channel, int level) const {
    value at{level, false};
    if (s.balance) at = {balance[channel][std::size_t(level)].v, wide};
    for (const std::vector<tone_entry>* table : {&lift, &contrast}) {
      if (!table->empty()) at = {(*table)[std::size_t(wide ? at.in_10_bits() : at.v)].v, wide};
    }
    const auto through = [&](const kit::curve& curve) {
      const int entry = curve[std::size_t(at.in_10_bits())] / 64;
      at = {wide ? entry : entry / 4, wide};
    };
    if (s.rgb_curves) through(s.rgb_curves->curves[channel]);
    if (s.curve) through(s.curve->curves[0]);
    return at;
  }

  kit::bytes line(unsigned layout, const kit::bytes& src, const kit::bytes& mask) const {
    static constexpr int channel_at[4][4] = {{0, 1, 2}, {2, 1, 0}, {2, 1, 0, -1}, {-1, 0, 1, 2}};
    const std::size_t pixel_samples = layout < 2 ? 3 : 4;
    const bool out16 = (s.flags & VRK_OUT16) != 0;
    samples out;
    for (std::size_t i = 0; i < src.size(); ++i) {
      const std::size_t p = i / pixel_samples;
      const int channel = channel_at[layout][i % pixel_samples];
      const bool blank = channel < 0 || (!mask.empty() && (mask[p / 8] >> (7 - p % 8) & 1) != 0);
      const auto [v, is_10_bits] = blank ? value{0, false} : chain(std::size_t(channel), src[i]);
      const int sample = out16 ? (is_10_bits ? v * 64 + v / 16 : v * 257) : is_10_bits ? v / 4 : v;
      out.push_back(std::uint16_t(sample));
    }
    return packed(out, out16);
  }
};

// All levels in every channel, in a different order each.
inline kit::bytes levels_of(std::size_t pixels, std::size_t pixel_samples = 3) {
  kit::bytes src(pixels * pixel_samples);
  for (std::size_t i = 0; i < src.size(); ++i) {
    src[i] = std::uint8_t(i / pixel_samples * (2 * (i % pixel_samples) + 1) + i % pixel_samples);
  }
  return src;
}

}  // namespace vrk::test
