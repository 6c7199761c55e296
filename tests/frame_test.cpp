#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>

#include "tests/every_export.h"
#include "tests/guard.h"
#include "vrk.h"

namespace {

using namespace vrk;

TEST(frame, version_is_a_constant_text) {
  EXPECT_STREQ(vrk_get_version(), "1.3.4.3");
  EXPECT_EQ(vrk_get_version(), vrk_get_version());
}

TEST(frame, cmyk_becomes_kcmy_in_place) {
  std::array<std::uint8_t, 9> bytes{1, 2, 3, 4, 11, 12, 13, 14, 99};
  vrk_cmyk_to_kcmy_8(2, bytes.data());
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 9>{4, 1, 2, 3, 14, 11, 12, 13, 99}));

  std::array<std::uint16_t, 5> words{0x0102, 0x0304, 0x0506, 0x0708, 0x9999};
  vrk_cmyk_to_kcmy_16(1, words.data());
  EXPECT_EQ(words, (std::array<std::uint16_t, 5>{0x0708, 0x0102, 0x0304, 0x0506, 0x9999}));
}

TEST(frame, a_count_of_0_touches_no_pixel) {
  vrk_cmyk_to_kcmy_8(0, nullptr);
  vrk_cmyk_to_kcmy_16(0, nullptr);
}

// Gaps between tables included, so that a handle can be compared or its checksum taken.
TEST(frame, handles_do_not_show_what_their_memory_held) {
  const test::job_tables t;
  const std::int16_t balance[] = {1, -1, 2};
  const auto size = [](const kit::bytes& image) { return std::uint32_t(image.size()); };
  const std::function<std::uint32_t(void*)> stages[] = {
      [&](void* mem) { return vrk_create_preproc(balance, 1, 1, 1, t.curve.data(), 0, nullptr, VRK_OUT16, mem); },
      [&](void* mem) { return vrk_create_preproc2(balance, 1, 1, t.curve.data(), 0, nullptr, VRK_COMPOSE, mem); },
      [&](void* mem) { return vrk_create_csc1(size(t.csc1), t.csc1.data(), 0, mem); },
      [&](void* mem) { return vrk_create_csc2(size(t.csc2), t.csc2.data(), 3, VRK_OUT16, mem); },
      [&](void* mem) { return vrk_create_csc2(size(t.curve), t.curve.data(), 1, 0, mem); },
      [&](void* mem) {
        return vrk_create_postproc(4, 1, t.curves.data(), 1, t.curve.data(), 0, nullptr, 0, nullptr, 0, nullptr, 0,
                                   nullptr, 0, nullptr, VRK_OUT16, mem);
      },
      [&](void* mem) {
        return vrk_create_ed(24, size(t.edtb), t.edtb.data(), size(t.edpr_dots), t.edpr_dots.data(), 0, mem);
      },
      [&](void* mem) { return vrk_create_dither(24, size(t.dith), t.dith.data(), 0, mem); },
  };
  for (std::size_t stage = 0; stage < std::size(stages); ++stage) {
    const std::uint32_t bytes = stages[stage](nullptr);
    test::fenced_block one(bytes, 4, 0xA5), other(bytes, 4, 0x5A);  // gaps depend on the address within 32 bytes alone
    const std::uint32_t used = stages[stage](one.data());
    ASSERT_NE(used, 0u) << stage;
    ASSERT_EQ(stages[stage](other.data()), used) << stage;
    EXPECT_TRUE(std::ranges::equal(one.contents().first(used), other.contents().first(used))) << stage;
  }
}

}  // namespace
