#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "kit/curve_image.h"
#include "tests/guard.h"
#include "vrk.h"

namespace {

using namespace vrk;
using test::fenced_block;
using test::guarded_copy;
using byte_string = std::vector<std::uint8_t>;

// ---- Both pre-processors as one, so that every test serves both ----

struct settings {
  bool second = false;
  std::optional<std::array<std::int16_t, 3>> balance{};  // the second takes the first two as its control values
  int lift = 0, contrast = 0;
  const kit::bytes *curve = nullptr, *rgb_curves = nullptr;
  std::uint32_t flags = 0;

  std::uint32_t create(void* mem) const {
    const std::int16_t* const steps = balance ? balance->data() : nullptr;
    const auto image = [](const kit::bytes* b) -> const void* { return b == nullptr ? nullptr : b->data(); };
    const auto lift_word = std::uint32_t(lift), contrast_word = std::uint32_t(contrast);
    if (second) {
      return vrk_create_preproc2(steps, contrast_word, curve != nullptr, image(curve), rgb_curves != nullptr,
                                 image(rgb_curves), flags, mem);
    }
    return vrk_create_preproc(steps, lift_word, contrast_word, curve != nullptr, image(curve), rgb_curves != nullptr,
                              image(rgb_curves), flags, mem);
  }
};

struct handle {
  fenced_block mem;
  bool second;
  std::uint32_t used;

  explicit handle(const settings& s, std::size_t offset = 0) : mem(s.create(nullptr), offset), second(s.second) {
    used = s.create(mem.data());
    EXPECT_NE(used, 0u);
    EXPECT_LE(used, mem.contents().size());
    EXPECT_TRUE(mem.fences_intact());
  }
  void set_layout(std::uint32_t layout) { (second ? vrk_set_preproc2_rgb : vrk_set_preproc_rgb)(mem.data(), layout); }
  std::uint32_t transform(const void* src, const std::uint8_t* mask, std::uint32_t pixels, void* dst) {
    return (second ? vrk_xform_preproc2 : vrk_xform_preproc)(mem.data(), src, mask, pixels, dst);
  }
};

const kit::bytes& one_curve() {
  static const kit::bytes image = [] {
    kit::curve c;
    for (unsigned i = 0; i < 1024; ++i) c[i] = std::uint16_t(65535 - i * i / 16);
    return kit::curve_image{.version = "001z", .curves = {c}}.encode();
  }();
  return image;
}

const kit::bytes& three_curves() {
  static const kit::bytes image = [] {
    kit::curve r, g, b;
    for (unsigned i = 0; i < 1024; ++i) {
      r[i] = std::uint16_t(i * 64 + i % 64);
      g[i] = std::uint16_t(i < 512 ? i * 127 : 65535);
      b[i] = std::uint16_t(i * 40503);  // no order at all
    }
    return kit::curve_image{.output_count = 9, .curves = {r, g, b}}.encode();
  }();
  return image;
}

// Every combination of stages (the second pre-processor has no lift), with steps that move the tables well.
std::vector<settings> every_chain(std::uint32_t flags) {
  std::vector<settings> all;
  for (int bits = 0; bits < 48; ++bits) {
    settings s{.second = bits >= 32, .flags = flags};
    if (bits & 1) s.balance = {3, -5, -1};
    if (bits & 2) s.contrast = bits & 4 ? -3 : 2;
    if (bits & 4) s.curve = &one_curve();
    if (bits & 8) s.rgb_curves = &three_curves();
    if (bits & 16 && !s.second) s.lift = bits & 2 ? -7 : 4;
    if (!(bits & 16 && s.second)) all.push_back(s);
  }
  return all;
}

// ---- The definition, one pixel at a time ----

struct value {
  int v;
  bool is_10_bits;
};

int widen(int v) { return v * 4 + v / 64; }

std::vector<int> pushed_diagonal(const std::function<double(double)>& d, int max, int count) {
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
  bool wide, combined;
  std::array<std::vector<int>, 3> balance;
  std::vector<int> lift, contrast;

  explicit reference(const settings& settings) : s(settings) {
    wide = (s.flags & (VRK_OUT16 | VRK_MID10 | VRK_COMPOSE)) != 0;
    combined = (s.flags & VRK_COMPOSE) != 0;
    const int max = wide ? 1023 : 255;
    if (s.balance) {
      std::array<int, 3> n{(*s.balance)[0], (*s.balance)[1], (*s.balance)[2]};
      if (s.second) n = grid_steps(n[0], n[1]);
      const double unit = s.second ? 0.0196078431372549 : 0.0392156862745098;
      for (std::size_t c = 0; c < 3; ++c) {
        const double a = n[c] == 0 ? 0.0 : (n[c] * unit / std::sqrt(2.0)) / (1.0 - 2.0 * std::exp(-5.0));
        balance[c] = pushed_diagonal(
            [a](double at) { return a * (1.0 - std::exp(-10.0 * at) - std::exp(-10.0 * (1.0 - at))); }, max, 256);
      }
    }
    if (s.lift != 0) {
      const double a = s.lift * 0.05 / std::sqrt(2.0);
      lift = pushed_diagonal([a](double at) { return a * at * (1.0 - std::exp(-4.0 * (1.0 - 2.0 * (at - 0.5)))); }, max,
                             max + 1);
    }
    if (s.contrast != 0) {
      const double away = 1.0 + 0.4 * std::abs(s.contrast);
      const double g = !s.second ? std::max(s.contrast, -5) * 0.2 + 1.0 : s.contrast > 0 ? away : 1.0 / away;
      const double half = wide ? 511 : 127, scale = wide ? 0.0019569471624266144 : 0.007874015748031496;
      for (int i = 0; i <= max; ++i) {
        contrast.push_back(
            int(i <= half ? half * std::pow(i * scale, g) : max - half * std::pow((max - i) * scale, g)));
      }
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

  value curve(const kit::bytes& image, std::size_t k, value in) const {
    const std::size_t at = 12 + 2048 * k + 2 * std::size_t(in.is_10_bits ? in.v : widen(in.v));
    const int entry = image[at] * 4 + image[at + 1] / 64;
    return wide ? value{entry, true} : value{entry / 4, false};
  }

  // `channel` is 0, 1, 2 for R, G, B.
  value chain(std::size_t channel, int level) const {
    value at{level, false};
    if (s.balance) at = {balance[channel][std::size_t(level)], wide};
    for (const std::vector<int>* table : {&lift, &contrast}) {
      if (!table->empty()) at = {(*table)[std::size_t(wide && !at.is_10_bits ? widen(at.v) : at.v)], wide};
    }
    if (s.rgb_curves != nullptr) at = curve(*s.rgb_curves, channel, at);
    if (s.curve != nullptr) at = curve(*s.curve, 0, at);
    return at;
  }

  byte_string line(unsigned layout, const byte_string& src, const byte_string& mask, std::size_t pixels) const {
    static constexpr int channel_at[4][4] = {{0, 1, 2}, {2, 1, 0}, {2, 1, 0, -1}, {-1, 0, 1, 2}};
    const std::size_t samples = layout < 2 ? 3 : 4;
    byte_string out;
    for (std::size_t p = 0; p < pixels; ++p) {
      const bool blank = !mask.empty() && (mask[p / 8] >> (7 - p % 8) & 1) != 0;
      for (std::size_t i = 0; i < samples; ++i) {
        const int channel = channel_at[layout][i];
        const value at = blank || channel < 0 ? value{0, false} : chain(std::size_t(channel), src[samples * p + i]);
        if (s.flags & VRK_OUT16) {
          const auto sample = std::uint16_t(at.is_10_bits ? at.v * 64 + at.v / 16 : at.v * 257);
          const auto* bytes = reinterpret_cast<const std::uint8_t*>(&sample);
          out.insert(out.end(), bytes, bytes + 2);
        } else {
          out.push_back(std::uint8_t(at.is_10_bits ? at.v / 4 : at.v));
        }
      }
    }
    return out;
  }
};

// All levels in every channel, in a different order each.
byte_string all_levels(std::size_t samples) {
  byte_string src(256 * samples);
  for (std::size_t i = 0; i < src.size(); ++i)
    src[i] = std::uint8_t(i / samples * (2 * (i % samples) + 1) + i % samples);
  return src;
}

// ---- Tests ----

TEST(preproc, every_chain_gives_what_its_definition_gives) {
  for (std::uint32_t flags : {0u, VRK_MID10, VRK_OUT16, VRK_COMPOSE, VRK_COMPOSE | VRK_OUT16 | 0x8000u}) {
    for (const settings& s : every_chain(flags)) {
      const reference expected(s);
      handle h(s, 20);
      const byte_string before(h.mem.contents().begin(), h.mem.contents().end());
      for (unsigned layout = 0; layout < 4; ++layout) {
        const std::size_t samples = layout < 2 ? 3 : 4;
        byte_string src = all_levels(samples);
        h.set_layout(layout);
        fenced_block dst(256 * samples * (flags & VRK_OUT16 ? 2 : 1), 1);
        ASSERT_EQ(h.transform(src.data(), nullptr, 256, dst.data()), 1u);
        const byte_string line = expected.line(layout, src, {}, 256);
        ASSERT_TRUE(std::equal(line.begin(), line.end(), dst.data()) && dst.fences_intact())
            << "flags " << flags << " layout " << layout << " second " << s.second << " balance "
            << s.balance.has_value() << " lift " << s.lift << " contrast " << s.contrast << " curves "
            << (s.curve != nullptr) << (s.rgb_curves != nullptr);
        if (!(flags & VRK_OUT16)) {  // in place
          ASSERT_EQ(h.transform(src.data(), nullptr, 256, src.data()), 1u);
          ASSERT_EQ(src, line);
        }
      }
      h.set_layout(0);
      ASSERT_TRUE(std::equal(before.begin(), before.end(), h.mem.data())) << "a transform wrote its handle";
    }
  }
}

TEST(preproc, masks_blank_whole_pixels_and_are_read_no_further_than_the_last) {
  for (std::uint32_t flags : {0u, VRK_OUT16}) {
    const settings s{.lift = 3, .flags = flags};
    const reference expected(s);
    for (unsigned layout = 0; layout < 4; ++layout) {
      handle h(s);
      h.set_layout(layout);
      const std::size_t samples = layout < 2 ? 3 : 4;
      for (std::size_t pixels = 0; pixels < 36; ++pixels) {
        byte_string src = all_levels(samples), mask{0x80, 0x01, 0xFF, 0x3C, 0xA5};
        src.resize(samples * pixels);
        mask.resize((pixels + 7) / 8);
        guarded_copy src_copy(src), mask_copy(mask);
        fenced_block dst(samples * pixels * (flags != 0 ? 2 : 1), 3);
        ASSERT_EQ(h.transform(src_copy.data(), mask_copy.data(), std::uint32_t(pixels), dst.data()), 1u);
        const byte_string line = expected.line(layout, src, mask, pixels);
        ASSERT_TRUE(std::equal(line.begin(), line.end(), dst.data()) && dst.fences_intact());
      }
    }
  }
}

TEST(preproc, layouts_above_3_are_refused) {
  handle h(settings{});
  fenced_block dst(6);
  const byte_string src{1, 2, 3, 4, 5, 6};
  for (std::uint32_t layout : {4u, 255u, 0x1FFu}) {
    h.set_layout(layout);
    EXPECT_EQ(h.transform(src.data(), nullptr, 2, dst.data()), 0u);
    EXPECT_EQ(h.transform(nullptr, nullptr, 0, nullptr), 0u);
  }
  EXPECT_TRUE(dst.untouched());
  h.set_layout(0xFF01);  // the low byte counts
  EXPECT_EQ(h.transform(nullptr, nullptr, 0, nullptr), 1u);
  EXPECT_EQ(h.transform(src.data(), nullptr, 2, dst.data()), 1u);
  EXPECT_EQ(std::memcmp(dst.data(), src.data(), 6), 0);
}

// What the storage takes when it is laid out piece by piece from `at` on.
std::size_t bytes_used(const settings& s, std::size_t at) {
  const std::size_t start = at;
  const bool wide = (s.flags & (VRK_OUT16 | VRK_MID10 | VRK_COMPOSE)) != 0;
  const auto section = [&](std::size_t bytes) { at = (at + 31) / 32 * 32 + bytes; };
  at += (s.second ? 13 : 15) * 4 + 4 + 1;
  if (s.balance) at += 6, section(1536);
  if (s.lift != 0) at += 1, section(wide ? 2048 : 512);
  if (s.contrast != 0) at += 1, section(wide ? 2048 : 512);
  if (s.curve != nullptr) section(2048);
  if (s.rgb_curves != nullptr) section(6144);
  if (s.flags & VRK_COMPOSE) section(1536);
  section(s.flags & VRK_OUT16 ? 8 : 4);
  return at - start;
}

TEST(preproc, sizes_and_used_bytes) {
  EXPECT_EQ(settings{}.create(nullptr), 100u);
  EXPECT_EQ(settings{.flags = VRK_OUT16 | VRK_IN16}.create(nullptr), 104u);
  EXPECT_EQ(settings{.second = true}.create(nullptr), 92u);
  EXPECT_EQ((settings{.second = true, .flags = VRK_OUT16}.create(nullptr)), 96u);
  EXPECT_EQ((settings{.balance = {{1, 2, 3}}}.create(nullptr)), 100u + 1573);
  EXPECT_EQ((settings{.lift = 256 + 1, .contrast = 512}.create(nullptr)), 100u + 544);  // low bytes
  EXPECT_EQ((settings{.lift = 1, .contrast = -1, .flags = VRK_MID10}.create(nullptr)), 100u + 2 * 2080);
  EXPECT_EQ((settings{.curve = &one_curve(), .rgb_curves = &three_curves()}.create(nullptr)), 100u + 2079 + 6175);
  EXPECT_EQ((settings{.flags = VRK_COMPOSE}.create(nullptr)), 100u + 1567);

  for (std::uint32_t flags : {0u, VRK_OUT16 | VRK_COMPOSE}) {
    for (const settings& s : every_chain(flags)) {
      for (std::size_t offset = 0; offset < 32; offset += 4) {
        ASSERT_EQ(handle(s, offset).used, bytes_used(s, offset)) << "address " << offset << " modulo 32";
      }
    }
  }
}

TEST(preproc, hint_is_the_flags_word_without_in16) {
  EXPECT_EQ(vrk_query_preproc_hint(handle(settings{.flags = 0xFFFFFFFF}).mem.data()), 0xFFFFFFFEu);
  EXPECT_EQ(vrk_query_preproc2_hint(handle(settings{.second = true, .flags = 0x41}).mem.data()), 0x40u);
}

// Output of a gray pixel without any flags.
byte_string gray(const settings& s, std::uint8_t level) {
  byte_string out(3), src(3, level);
  handle(s).transform(src.data(), nullptr, 1, out.data());
  return out;
}

TEST(preproc, known_entries) {
  const settings up{.balance = {{1, -1, 0}}}, up2{.second = true, .balance = {{1, 0, 9}}};
  EXPECT_EQ(gray(up, 128), (byte_string{138, 118, 128}));
  EXPECT_EQ(gray(up, 0)[0], 0);
  EXPECT_EQ(gray(up, 32)[0], 40);
  EXPECT_EQ(gray(up, 255)[0], 255);
  EXPECT_EQ(gray(up2, 128), (byte_string{133, 123, 123}));
  EXPECT_EQ(gray(up2, 32)[0], 36);
  EXPECT_EQ(gray({.lift = 1}, 128)[0], 134);
  EXPECT_EQ(gray({.lift = 1}, 224)[1], 231);
  EXPECT_EQ(gray({.lift = -1}, 128)[2], 122);

  const byte_string src = all_levels(3);
  byte_string dst(768);
  handle(settings{.balance = {{0, 0, 0}}}).transform(src.data(), nullptr, 256, dst.data());
  EXPECT_EQ(dst, src);

  const int levels[] = {0, 32, 64, 127, 128, 192, 255};
  const int entries[4][7] = {{0, 24, 55, 127, 128, 200, 255},
                             {0, 42, 73, 127, 128, 182, 255},
                             {0, 18, 48, 127, 128, 207, 255},
                             {0, 47, 77, 127, 128, 178, 255}};
  for (int row = 0; row < 4; ++row) {
    for (int i = 0; i < 7; ++i) {
      EXPECT_EQ(gray({.second = row >= 2, .contrast = row % 2 ? -1 : 1}, std::uint8_t(levels[i]))[0], entries[row][i]);
    }
  }
}

TEST(preproc, steps_of_any_size) {
  std::vector<settings> cases{
      {.balance = {{32767, -32768, 0}}, .lift = 127, .contrast = 127},
      {.lift = -128, .contrast = -128, .flags = VRK_OUT16},
      {.contrast = -6},
      {.second = true, .balance = {{-32768, 32767, 0}}, .contrast = -128, .flags = VRK_COMPOSE}};
  for (std::int16_t a = -5; a <= 5; ++a) {
    for (std::int16_t b = -5; b <= 5; ++b) cases.push_back({.second = true, .balance = {{a, b, 0}}});
  }
  const byte_string src = all_levels(3);
  for (const settings& s : cases) {
    byte_string dst(s.flags & VRK_OUT16 ? 1536 : 768);
    handle(s).transform(src.data(), nullptr, 256, dst.data());
    EXPECT_EQ(dst, reference(s).line(0, src, {}, 256));
  }
}

TEST(preproc, curve_images_are_refused_by_their_headers_in_the_size_call_alone) {
  kit::curve_image good{.curves = {kit::curve{}}};
  struct fault {
    const char* name;
    std::function<void(kit::curve_image&)> make;
  };
  const fault faults[] = {{"magic", [](auto& c) { c.magic = "tld1"; }},
                          {"version", [](auto& c) { c.version = "002z"; }},
                          {"entry count swapped", [](auto& c) { c.entries = 4; }},
                          {"entry count", [](auto& c) { c.entries = 0x100; }},
                          {"no curves", [](auto& c) { c.curve_count = 0; }},
                          {"other stage's curves", [](auto& c) { c.curve_count = c.curves.size() == 1 ? 3 : 1; }}};
  for (const bool second : {false, true}) {
    for (const std::size_t curves : {1, 3}) {
      good.curves.resize(curves);
      settings s{.second = second};
      const kit::bytes*& slot = curves == 1 ? s.curve : s.rgb_curves;
      const kit::bytes image = good.encode();
      slot = &image;
      const std::uint32_t size = s.create(nullptr);
      EXPECT_NE(size, 0u);
      for (const fault& f : faults) {
        kit::curve_image faulty = good;
        f.make(faulty);
        const kit::bytes bad = faulty.encode();
        slot = &bad;
        EXPECT_EQ(s.create(nullptr), 0u) << f.name;
        fenced_block mem(size);
        EXPECT_NE(s.create(mem.data()), 0u) << f.name;
      }
    }
  }
}

TEST(preproc, images_are_read_no_further_than_they_must_be) {
  guarded_copy header(std::span<const std::uint8_t>(one_curve()).first(12));
  EXPECT_EQ(vrk_create_preproc(nullptr, 0, 0, 1, header.data(), 0, nullptr, 0, nullptr), 100u + 2079);
  guarded_copy one(one_curve()), three(three_curves());
  fenced_block mem(100 + 2079 + 6175, 4);
  EXPECT_NE(vrk_create_preproc(nullptr, 0, 0, 1, one.data(), 1, three.data(), 0, mem.data()), 0u);
  EXPECT_EQ(vrk_create_preproc(nullptr, 0, 0, 0, one.end(), 0, one.end(), 0, nullptr), 100u);  // switched off
}

TEST(preproc, refused_build_calls_touch_nothing) {
  fenced_block mem(9000, 1);
  EXPECT_EQ(settings{}.create(mem.data()), 0u);      // misaligned
  EXPECT_EQ(settings{}.create(mem.data() + 1), 0u);  // by two
  for (void* at : {static_cast<void*>(nullptr), static_cast<void*>(mem.data() + 3)}) {
    EXPECT_EQ(vrk_create_preproc(nullptr, 0, 0, 1, nullptr, 0, nullptr, 0, at), 0u);
    EXPECT_EQ(vrk_create_preproc2(nullptr, 0, 0, nullptr, 1, nullptr, 0, at), 0u);
  }
  EXPECT_TRUE(mem.untouched());
}

}  // namespace
