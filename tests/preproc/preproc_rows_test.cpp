// Every row of the pre-processors' kernels, and the tables that they read.
#include "base/elementary.h"
#include "preproc/preproc_kernels.h"
#include "preproc/tone_tables.h"
#include "tests/preproc/preproc_reference.h"

namespace {

using namespace vrk;
using namespace vrk::test;

// No transform reads them: they are there for who looks into a handle.
void expect_steps_kept(const preproc_settings& s, const preproc_handle& h) {
  for (const auto& [kept, step] : {std::pair{h.lift_step.get(), s.lift}, {h.contrast_step.get(), s.contrast}}) {
    ASSERT_EQ(kept != nullptr, step != 0);
    if (step != 0) {
      EXPECT_EQ(i8(*kept), step);
    }
  }
  ASSERT_EQ(bool(h.balance_steps), s.balance.has_value());
  if (!s.balance || s.second) return;
  EXPECT_EQ(std::memcmp(h.balance_steps.get(), s.balance->data(), sizeof *s.balance), 0);
}

TEST(preproc_rows, equal_the_definition) {
  const kit::bytes mask{0x11, 0xFF, 0x00, 0x80, 0x7E};
  for (const u32 flags : {u32{0}, VRK_COMPOSE, VRK_OUT16, VRK_OUT16 | VRK_COMPOSE}) {
    for (const preproc_settings& s : every_preproc_chain(flags)) {
      handle h(s);
      expect_steps_kept(s, record_of<preproc_handle>(h.get()));
      const preproc_reference expected(s);
      for (const preproc_row& row : preproc_rows()) {
        if (row.out != output_bits(flags)) continue;
        for (const u32 pixels : {1u, 38u, 192u}) {
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

// The one stage of `s`, by what comes out for the 256 levels of gray: 16-bit output keeps all ten bits of wide tables.
void expect_entries(const preproc_settings& s, std::array<const std::vector<tone_entry>*, 3> expected) {
  handle h(s);
  const bool wide = s.flags != 0;
  kit::bytes grays;
  for (u32 i = 0; i < 3 * input_levels; ++i) grays.push_back(u8(i / 3));
  const samples out = unpacked(s.transformed(h, 0, grays), wide);
  for (std::size_t i = 0; i < out.size(); ++i) {
    const std::size_t level = i / 3;
    const std::vector<tone_entry>& table = *expected[i % 3];
    const tone_entry& entry = table[table.size() == 256 ? level : level * 4 + level / 64];
    EXPECT_LE(std::abs((wide ? out[i] >> 6 : out[i]) - entry.v), int(entry.near_tie)) << "level " << level;
  }
}

TEST(preproc_tables, of_every_step_equal_those_of_the_standard_librarys_functions) {
  for (const std::uint32_t flags : {0u, VRK_OUT16}) {
    for (int step = -128; step < 128; ++step) {
      SCOPED_TRACE(step);
      const auto times = [&](int factor) { return std::int16_t(factor * step); };
      for (const bool second : {false, true}) {
        const preproc_settings balance{.second = second, .balance = {{times(1), times(15), 0}}, .flags = flags};
        const preproc_settings contrast{.second = second, .contrast = step, .flags = flags};
        const preproc_reference balanced(balance), contrasted(contrast);
        expect_entries(balance, {&balanced.balance[0], &balanced.balance[1], &balanced.balance[2]});
        if (step != 0) expect_entries(contrast, {&contrasted.contrast, &contrasted.contrast, &contrasted.contrast});
      }
      const preproc_settings lift{.lift = step, .flags = flags};
      const preproc_reference lifted(lift);
      if (step != 0) expect_entries(lift, {&lifted.lift, &lifted.lift, &lifted.lift});
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
