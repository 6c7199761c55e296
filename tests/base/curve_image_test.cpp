// Tone curve images as the stages judge them that are not told how long they are, beside the kit's judgement.
#include "kit/explain.h"
#include "tests/curves.h"
#include "tests/fenced_handle.h"
#include "vrk.h"

namespace {

using namespace vrk::test;
using namespace vrk::kit;

struct consumer {
  const char* table;
  unsigned curves;
  std::uint32_t (*create)(const void* image, void* mem);
  std::string (*why_refused)(const bytes& image, unsigned curves);
  bool judges_in_both_calls = false;
};

// With a main table of six planes, or with a table of K alone.
std::uint32_t create_postproc(bool main, const void* at, void* mem) {
  return vrk_create_postproc(main ? 6 : 1, main, at, !main, at, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                             nullptr, 0, mem);
}

std::string why_refused_plane_curve(const bytes& image, unsigned) {
  return image[9] > 1 ? "makes several planes of one" : why_refused_curves(image, 1);
}

const consumer consumers[] = {
    {"curve", 1, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 1, at, 0, nullptr, 0, mem); },
     why_refused_curves},
    {"curve", 1, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 1, at, 0, nullptr, 0, mem); },
     why_refused_curves},
    {"RGB curves", 3, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 0, nullptr, 1, at, 0, mem); },
     why_refused_curves},
    {"RGB curves", 3, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 0, nullptr, 1, at, 0, mem); },
     why_refused_curves},
    {"main table", 6, [](auto* at, auto* mem) { return create_postproc(true, at, mem); }, why_refused_main_curves,
     true},
    {"plane table", 1, [](auto* at, auto* mem) { return create_postproc(false, at, mem); }, why_refused_plane_curve,
     true},
};

// The size call reads no further than the header.
TEST(curve, every_stage_takes_the_images_that_are_for_it) {
  for (const consumer& by : consumers) {
    const bytes good = random_curves(by.curves).encode();
    const std::uint32_t size = by.create(good.data(), nullptr);
    EXPECT_EQ(by.why_refused(good, by.curves), "");
    EXPECT_NE(by.why_refused({good.begin(), good.end() - 1}, by.curves), "");
    for (std::size_t at = 0; at < 12; ++at) {
      for (const std::uint8_t value : header_values) {
        bytes image = good;
        image[at] = value;
        const std::string why = by.why_refused(image, by.curves);
        const auto where = testing::Message() << by.table << ", byte " << at << " = " << +value << ": " << why;
        guarded_copy whole(image), header({image.data(), 12});
        EXPECT_EQ(by.create(header.data(), nullptr) == 0, !why.empty()) << where;
        fenced_block mem(size);
        EXPECT_EQ(by.create(whole.data(), mem.data()) == 0, !why.empty() && by.judges_in_both_calls) << where;
      }
    }
    expect_refused([&](void* mem) { return by.create(nullptr, mem); }, by.table);
  }
}

}  // namespace
