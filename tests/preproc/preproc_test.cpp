#include <array>
#include <cmath>
#include <optional>

#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "tests/samples.h"
#include "vrk.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::curve_image;

constexpr std::uint32_t wide_flags = VRK_OUT16 | VRK_MID10 | VRK_COMPOSE;
const std::optional<curve_image> one_curve = random_curves(1, 2), three_curves = random_curves(3);

// The arguments of either create function: called with memory, it makes the call. Images end at an unreadable page, and
// those that are off lie in one.
struct settings {
  bool second = false;
  std::optional<std::array<std::int16_t, 3>> balance{};  // the second takes the first two as its control values
  int lift = 0, contrast = 0;                            // the second has no lift
  std::optional<curve_image> curve{}, rgb_curves{};
  std::uint32_t flags = 0;

  std::uint32_t operator()(void* mem) const {
    const std::int16_t* const steps = balance ? balance->data() : nullptr;
    const auto lift_word = std::uint32_t(lift), contrast_word = std::uint32_t(contrast);
    guarded_copy one(curve ? curve->encode() : bytes{}), rgb(rgb_curves ? rgb_curves->encode() : bytes{});
    const std::uint32_t one_on = one.size(), rgb_on = rgb.size();
    return second ? vrk_create_preproc2(steps, contrast_word, one_on, one.data(), rgb_on, rgb.data(), flags, mem)
                  : vrk_create_preproc(steps, lift_word, contrast_word, one_on, one.data(), rgb_on, rgb.data(), flags,
                                       mem);
  }
  // mask: empty for none.
  bytes transformed(handle& h, unsigned layout, const bytes& src, const bytes& mask = {}) const {
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
std::vector<settings> every_chain(std::uint32_t flags) {
  std::vector<settings> all;
  for (int bits = 0; bits < 48; ++bits) {
    settings s{.second = bits >= 32, .flags = flags};
    if (bits & 1) s.balance = {3, -5, -1};
    if (bits & 2) s.contrast = bits & 4 ? -3 : 2;
    if (bits & 4) s.curve = one_curve;
    if (bits & 8) s.rgb_curves = three_curves;
    if (bits & 16) s.lift = bits & 2 ? -7 : 4;
    all.push_back(s);
  }
  return all;
}

// ---- The definition, one pixel at a time ----

struct value {
  int v;
  bool is_10_bits;
};

int widen(int v) { return v * 4 + v / 64; }

template <class Displacement>
std::vector<int> pushed_diagonal(int max, int count, Displacement d) {
  const double dx = 1.0 / (count - 1), du = dx * 0.03333333333333333;
  std::vector<int> entries;
  for (double u = 0, x = 0; int(entries.size()) < count; u = u + du) {
    const double side = d(u < 0 ? 0 : u > 1 ? 1 : u);
    if (u - 0.7071067812 * side < x) continue;
    const double y = u + 0.7071067812 * side;
    entries.push_back(int((y < 0 ? 0 : y > 1 ? 1 : y) * max + 0.5));
    x = x + dx;
  }
  return entries;
}

struct reference {
  settings s;
  bool wide = (s.flags & wide_flags) != 0;
  std::array<std::vector<int>, 3> balance{};
  std::vector<int> lift{}, contrast{};

  explicit reference(const settings& of) : s(of) {
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
      contrast.push_back(int(i <= half ? half * std::pow(i * scale, g) : max - half * std::pow((max - i) * scale, g)));
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

  // `channel` is 0, 1, 2 for R, G, B.
  value chain(std::size_t channel, int level) const {
    value at{level, false};
    if (s.balance) at = {balance[channel][std::size_t(level)], wide};
    for (const std::vector<int>* table : {&lift, &contrast}) {
      if (!table->empty()) at = {(*table)[std::size_t(wide && !at.is_10_bits ? widen(at.v) : at.v)], wide};
    }
    const auto through = [&](const vrk::kit::curve& curve) {
      const int entry = curve[std::size_t(at.is_10_bits ? at.v : widen(at.v))] / 64;
      at = {wide ? entry : entry / 4, wide};
    };
    if (s.rgb_curves) through(s.rgb_curves->curves[channel]);
    if (s.curve) through(s.curve->curves[0]);
    return at;
  }

  bytes line(unsigned layout, const bytes& src, const bytes& mask) const {
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

// ---- Tests ----

// All levels in every channel, in a different order each.
bytes levels_of(std::size_t pixels, std::size_t pixel_samples = 3) {
  bytes src(pixels * pixel_samples);
  for (std::size_t i = 0; i < src.size(); ++i) {
    src[i] = std::uint8_t(i / pixel_samples * (2 * (i % pixel_samples) + 1) + i % pixel_samples);
  }
  return src;
}

void expect_lines_of_definition(const settings& s, std::size_t pixels = 256, const bytes& mask = {}) {
  const reference expected(s);
  handle h(s);
  for (unsigned layout = 0; layout < 4; ++layout) {
    const bytes src = levels_of(pixels, layout < 2 ? 3 : 4);
    EXPECT_EQ(s.transformed(h, layout, src, mask), expected.line(layout, src, mask))
        << (s.second ? "second, flags " : "first, flags ") << s.flags << ", layout " << layout << ", stages "
        << s.balance.has_value() << s.lift << s.contrast << s.rgb_curves.has_value() << s.curve.has_value();
  }
}

TEST(preproc, every_chain_gives_what_its_definition_gives) {
  for (const std::uint32_t flags : {0u, VRK_MID10, VRK_OUT16, VRK_COMPOSE, VRK_COMPOSE | VRK_OUT16}) {
    for (const settings& s : every_chain(flags)) expect_lines_of_definition(s);
  }
}

TEST(preproc, masks_blank_whole_pixels_and_are_read_no_further_than_the_last) {
  for (const std::uint32_t flags : {0u, VRK_OUT16}) {
    for (std::size_t pixels = 0; pixels < 36; ++pixels) {
      bytes mask{0x80, 0x01, 0xFF, 0x3C, 0xA5};
      mask.resize((pixels + 7) / 8);
      expect_lines_of_definition({.lift = 3, .flags = flags}, pixels, mask);
    }
  }
}

TEST(preproc, steps_of_any_size) {
  std::vector<settings> cases{
      {.balance = {{32767, -32768, 0}}, .lift = 127, .contrast = 127},
      {.lift = -128, .contrast = -128, .flags = VRK_OUT16},
      {.lift = 256 + 1, .contrast = 512 - 6},  // low bytes: 1 and -6
      {.second = true, .balance = {{-32768, 32767, 0}}, .contrast = -128, .flags = VRK_COMPOSE}};
  for (std::int16_t a = -5; a <= 5; ++a) {
    for (std::int16_t b = -5; b <= 5; ++b) cases.push_back({.second = true, .balance = {{a, b, 9}}});
  }
  for (const settings& s : cases) expect_lines_of_definition(s);
}

TEST(preproc, worked_levels) {
  const auto gray = [](const settings& s, std::uint8_t level) {
    handle h(s);
    return s.transformed(h, 0, bytes(3, level));
  };
  EXPECT_EQ(gray({.balance = {{1, -1, 0}}}, 128), (bytes{138, 118, 128}));
  EXPECT_EQ(gray({.second = true, .balance = {{1, 0}}}, 128), (bytes{133, 123, 123}));
  EXPECT_EQ(gray({.lift = 1}, 224), bytes(3, 231));
  EXPECT_EQ(gray({.contrast = 1}, 192), bytes(3, 200));
  EXPECT_EQ(gray({.second = true, .contrast = -1}, 32), bytes(3, 47));
}

TEST(preproc, sizes_used_bytes_and_hints) {
  EXPECT_EQ(settings{}(nullptr), 100u);
  EXPECT_EQ((settings{.second = true, .flags = VRK_OUT16}(nullptr)), 96u);
  EXPECT_EQ((settings{.contrast = -1, .flags = VRK_MID10}(nullptr)), 100u + 2080);
  for (const std::uint32_t flags : {0u, 0xFFFFFFFF}) {
    for (const settings& s : every_chain(flags)) {
      const std::size_t table = 2 * ((flags & wide_flags) != 0 ? 1024 : 256), record = (s.second ? 13 : 15) * 4 + 4 + 1;
      std::vector<layout_part> layout;
      if (s.balance) layout.push_back({6, 3 * 2 * 256});
      if (s.lift != 0) layout.push_back({1, table});
      if (s.contrast != 0) layout.push_back({1, table});
      if (s.curve) layout.push_back({0, 2 * 1024});
      if (s.rgb_curves) layout.push_back({0, 3 * 2 * 1024});
      if (flags & VRK_COMPOSE) layout.push_back({0, 3 * 2 * 256});
      layout.push_back({0, flags & VRK_OUT16 ? 8u : 4u});
      layout[0].packed += record;
      expect_layout(s, layout);
      handle h(s);
      EXPECT_EQ((s.second ? vrk_query_preproc2_hint : vrk_query_preproc_hint)(h.get()), flags & ~VRK_IN16);
    }
  }
}

TEST(preproc, layouts_above_3_are_refused) {
  handle h(settings{});
  const auto transform = [&](std::uint32_t layout, std::uint32_t pixels) {
    vrk_set_preproc_rgb(h.get(), layout);
    return vrk_xform_preproc(h.get(), nullptr, nullptr, pixels, nullptr);
  };
  for (const std::uint32_t layout : {4u, 255u, 0x1FFu}) EXPECT_EQ(transform(layout, 0) + transform(layout, 2), 0u);
  EXPECT_EQ(transform(0xFF01, 0), 1u) << "the low byte counts";
}

}  // namespace
