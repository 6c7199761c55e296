// Tone curve images as the stages judge them that are not told how long they are.
#include <functional>

#include "tests/curves.h"
#include "tests/handle.h"
#include "vrk.h"

namespace {

using namespace vrk::test;
using vrk::kit::curve_image;

struct consumer {
  char letter;      // p: one curve for R, G and B; r: one for each; m: main table; k: plane table
  unsigned curves;  // of an image that it takes
  std::uint32_t (*create)(const void* image, void* mem);

  bool judges_in_both_calls() const { return letter == 'm' || letter == 'k'; }
};

// One plane, with a main table or with a table of K.
std::uint32_t create_postproc(bool main, const void* at, void* mem) {
  return vrk_create_postproc(1, main, at, !main, at, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                             mem);
}

const consumer consumers[] = {
    {'p', 1, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 1, at, 0, nullptr, 0, mem); }},
    {'p', 1, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 1, at, 0, nullptr, 0, mem); }},
    {'r', 3, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 0, nullptr, 1, at, 0, mem); }},
    {'r', 3, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 0, nullptr, 1, at, 0, mem); }},
    {'m', 4, [](auto* at, auto* mem) { return create_postproc(true, at, mem); }},
    {'k', 1, [](auto* at, auto* mem) { return create_postproc(false, at, mem); }},
};

// The size call reads no further than the header.
TEST(curve, every_stage_takes_the_headers_that_are_for_it) {
  const struct {
    const char* what;
    std::function<void(curve_image&)> change;
    std::string taken_by;
  } cases[] = {
      {"as it should be", [](auto&) {}, "prmk"},
      {"magic", [](auto& c) { c.magic = "tld1"; }, ""},
      {"001z", [](auto& c) { c.version = "001z"; }, "prmk"},
      {"002z", [](auto& c) { c.version = "002z"; }, "m"},
      {"0030", [](auto& c) { c.version = "0030"; }, ""},
      {"1024 entries, bytes swapped", [](auto& c) { c.entries = 4; }, ""},
      {"256 entries", [](auto& c) { c.entries = 256; }, ""},
      {"no curves", [](auto& c) { c.curve_count = 0; }, ""},
      {"one curve", [](auto& c) { c.curve_count = 1; }, "pmk"},
      {"two curves", [](auto& c) { c.curve_count = 2; }, ""},
      {"three curves", [](auto& c) { c.curve_count = 3; }, "r"},
      {"six curves", [](auto& c) { c.curve_count = 6; }, "m"},
      {"one comes out", [](auto& c) { c.output_count = 1; }, "prmk"},
      {"two come out", [](auto& c) { c.output_count = 2; }, "prm"},
  };
  for (const auto& c : cases) {
    for (const consumer& by : consumers) {
      const bool taken = c.taken_by.find(by.letter) != std::string::npos;
      curve_image table = random_curves(6);
      table.curve_count = by.curves;
      c.change(table);
      guarded_copy image(table.encode()), header(std::span(image.data(), 12));
      EXPECT_EQ(by.create(header.data(), nullptr) != 0, taken) << c.what << ": " << by.letter;
      fenced_block mem(1 << 16);
      EXPECT_EQ(by.create(image.data(), mem.data()) == 0, !taken && by.judges_in_both_calls())
          << c.what << ": " << by.letter;
    }
  }
}

TEST(curve, a_missing_image_is_refused) {
  for (const consumer& by : consumers) {
    expect_refused([&](void* mem) { return by.create(nullptr, mem); }, {by.letter});
  }
}

}  // namespace
