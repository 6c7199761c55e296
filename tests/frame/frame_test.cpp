#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "vrk.h"

namespace {

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

  vrk_cmyk_to_kcmy_8(0, nullptr);  // no pixel, no access
  vrk_cmyk_to_kcmy_16(0, nullptr);
}

}  // namespace
