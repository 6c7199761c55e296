#include "tests/preproc/preproc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using settings = preproc_settings;

void expect_lines_of_definition(const settings& s, std::size_t pixels, const bytes& mask) {
  const preproc_reference expected(s);
  handle h(s);
  for (const unsigned layout : {0u, 1u, 2u, 3u, 0u}) {
    const bytes src = levels_of(pixels, layout < 2 ? 3 : 4);
    EXPECT_EQ(s.transformed(h, layout, src, mask), expected.line(layout, src, mask))
        << (s.second ? "second, flags " : "first, flags ") << s.flags << ", layout " << layout << ", stages "
        << s.balance.has_value() << s.lift << s.contrast << s.rgb_curves.has_value() << s.curve.has_value();
  }
}

// Lines with a mask end inside its last byte, amid masked pixels or amid others.
TEST(preproc, every_chain_gives_what_its_definition_gives) {
  const bytes mask{0x80, 0x01, 0xFF, 0x3C, 0b0011'0010};
  for (const std::uint32_t flags : {0u, VRK_MID10, VRK_OUT16, VRK_COMPOSE, VRK_COMPOSE | VRK_OUT16}) {
    for (const settings& s : every_preproc_chain(flags)) {
      expect_lines_of_definition(s, 256, {});
      expect_lines_of_definition(s, flags == 0 ? 35 : 37, mask);
    }
    expect_lines_of_definition({.flags = flags}, 0, {});
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
  for (const settings& s : cases) expect_lines_of_definition(s, 256, {});
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
    for (const settings& s : every_preproc_chain(flags)) {
      const std::size_t table = 2 * ((flags & preproc_wide_flags) != 0 ? 1024 : 256),
                        record = (s.second ? 13 : 15) * 4 + 4 + 1;
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
  for (const bool second : {false, true}) {
    handle h(settings{.second = second});
    const auto transform = [&](std::uint32_t layout, std::uint32_t pixels) {
      (second ? vrk_set_preproc2_rgb : vrk_set_preproc_rgb)(h.get(), layout);
      return (second ? vrk_xform_preproc2 : vrk_xform_preproc)(h.get(), nullptr, nullptr, pixels, nullptr);
    };
    for (const std::uint32_t layout : {4u, 255u, 0x1FFu}) EXPECT_EQ(transform(layout, 0) + transform(layout, 2), 0u);
    EXPECT_EQ(transform(0xFF01, 0), 1u) << "the low byte counts";
  }
}

}  // namespace
