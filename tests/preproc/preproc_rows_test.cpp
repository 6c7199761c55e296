// Every row of the pre-processors' kernels, and the tables that they read.
#include "base/elementary.h"
#include "preproc/preproc_kernels.h"
#include "preproc/tone_tables.h"
#include "tests/preproc/preproc_reference.h"

namespace {

using namespace vrk;
using namespace vrk::test;

// Runs around the length from which on all levels are walked.
TEST(preproc_rows, equal_the_definition) {
  const kit::bytes mask{0x11, 0xFF, 0x00, 0x80, 0x7E};
  for (const u32 flags : {u32{0}, VRK_COMPOSE, VRK_OUT16, VRK_OUT16 | VRK_COMPOSE}) {
    for (const preproc_settings& s : every_preproc_chain(flags)) {
      handle h(s);
      const preproc_reference expected(s);
      for (const preproc_row& row : preproc_rows()) {
        if (row.out != output_bits(flags)) continue;
        for (const u32 pixels : {1u, 38u, 191u, 192u}) {
          const kit::bytes src = levels_of(pixels, row.layout < 2 ? 3 : 4), bits = pixels == 38 ? mask : kit::bytes{};
          const auto run = [&](void* at, auto* in, auto* out) {
            row.kernel(record_of<preproc_handle>(at), in, bits.empty() ? nullptr : bits.data(), pixels, out);
            return 1u;
          };
          EXPECT_EQ(h.line(src, src.size() * u32(row.out) / 8, run), expected.line(row.layout, src, bits))
              << row.out << " bits, layout " << row.layout << ", flags " << s.flags << ", " << pixels << " pixels";
        }
      }
    }
  }
}

void expect_entries(const std::vector<tone_entry>& expected, const u16* entries) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_LE(std::abs(entries[i] - expected[i].v), int(expected[i].near_tie)) << "entry " << i;
  }
}

TEST(preproc_tables, of_every_step_equal_those_of_the_standard_librarys_functions) {
  for (const std::uint32_t flags : {0u, VRK_MID10}) {
    for (int step = -128; step < 128; ++step) {
      SCOPED_TRACE(step);
      const auto balance = [&](int factor) { return std::int16_t(factor * step); };
      for (const preproc_settings& s :
           {preproc_settings{.balance = {{balance(1), balance(15), 0}}, .lift = step, .contrast = step, .flags = flags},
            preproc_settings{.second = true, .contrast = step, .flags = flags}}) {
        handle h(s);
        const auto& built = record_of<preproc_handle>(h.get());
        const preproc_reference expected(s);
        for (std::size_t c = 0; c < 3; ++c) expect_entries(expected.balance[c], built.balance.get() + 256 * c);
        expect_entries(expected.lift, built.lift.get());
        expect_entries(expected.contrast, built.contrast.get());
      }
    }
  }
}

// Every step that a driver offers, and far beyond: no point that the library leaves out may be the one that counts.
TEST(preproc_tables, are_those_of_the_whole_walk) {
  const auto expect_walked = [](const std::vector<u16>& entries, int max, auto displacement) {
    const std::vector<tone_entry> walked = pushed_diagonal(max, int(entries.size()), displacement);
    EXPECT_TRUE(std::ranges::equal(entries, walked, {}, {}, &tone_entry::v));
  };
  for (int i = -150; i <= 150; ++i) {
    const int step = std::abs(i) <= 100 ? i : (i < 0 ? i + 100 : i - 100) * 655;
    SCOPED_TRACE(step);
    for (const double unit : {10 / 255.0, 5 / 255.0}) {
      const double a = step * unit / std::sqrt(2.0) / (1 - 2 * vrk::exp(-5));
      const auto displacement = [a](double c) { return a * (1 - vrk::exp(-10 * c) - vrk::exp(-10 * (1 - c))); };
      for (const int max : {255, 1023}) {
        std::vector<u16> entries(256);
        balance_curve(step, unit, u32(max), entries);
        expect_walked(entries, max, displacement);
      }
    }
  }
  for (int step = -128; step < 128; ++step) {
    SCOPED_TRACE(step);
    const double a = step * 0.05 / std::sqrt(2.0);
    const auto displacement = [a](double c) { return a * c * (1 - vrk::exp(-4 * (1 - 2 * (c - 0.5)))); };
    for (const int max : {255, 1023}) {
      std::vector<u16> entries(std::size_t(max) + 1);
      lift_curve(step, entries);
      expect_walked(entries, max, displacement);
    }
  }
}

}  // namespace
