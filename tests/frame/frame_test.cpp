#include <gtest/gtest.h>

#include "tests/every_export.h"
#include "tests/samples.h"

namespace {

TEST(frame, version_is_a_constant_text) {
  EXPECT_STREQ(vrk_get_version(), "1.3.4.3");
  EXPECT_EQ(vrk_get_version(), vrk_get_version());
}

TEST(frame, cmyk_becomes_kcmy_in_place) {
  std::array<std::uint8_t, 9> bytes{1, 2, 3, 4, 11, 12, 13, 14, 99};
  vrk_cmyk_to_kcmy_8(2, bytes.data());
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 9>{4, 1, 2, 3, 14, 11, 12, 13, 99}));

  for (const std::size_t offset : {0, 1}) {
    const vrk::test::samples cmyk{0x0102, 0x0304, 0x0506, 0x0708, 1, 2, 3, 0xFF04, 0x1111, 0x2222, 0x3333, 0x4444};
    std::vector<std::uint8_t> words = vrk::test::packed(cmyk, true);
    vrk::test::fenced_block at(words.size(), offset);
    std::ranges::copy(words, at.data());
    vrk_cmyk_to_kcmy_16(3, at.data());
    const vrk::test::samples kcmy{0x0708, 0x0102, 0x0304, 0x0506, 0xFF04, 1, 2, 3, 0x4444, 0x1111, 0x2222, 0x3333};
    EXPECT_EQ(vrk::test::unpacked(at.bytes(), true), kcmy);
    EXPECT_TRUE(at.fences_intact());
  }

  vrk_cmyk_to_kcmy_8(0, nullptr);  // no pixel, no access
  vrk_cmyk_to_kcmy_16(0, nullptr);
}

TEST(frame, every_export_runs_with_handles_at_any_address) {
  const auto call = [](const char*, auto* function, auto... arguments) { return function(arguments...); };
  for (std::size_t offset = 0; offset < 32; ++offset)
    EXPECT_EQ(vrk::test::call_every_export(call, offset), 0) << offset;
}

}  // namespace
