// Every row of the post-processing kernels.
#include "postproc/postproc_kernels.h"
#include "tests/levels.h"
#include "tests/postproc/postproc_reference.h"

namespace {

using namespace vrk;
using namespace vrk::test;

// Runs around the length of one round over the planes, and of what vectors do at a time. A row for lines in place runs
// in place only.
void expect_row_as_defined(const postproc_row& row, cpu_level level, const postproc_job& j) {
  handle h(j);
  for (const u32 pixels : {0u, 1u, 511u, 513u, 1030u}) {
    samples src = all_levels(j);
    src.resize(pixels * j.in());
    const auto run = [&](void* at, auto* in, auto* out) {
      const kit::bytes apart(in, in + src.size() * u32(row.in) / 8);
      const u8* const from = in == out && row.in > row.out && !row.in_place ? apart.data() : in;
      row.kernel[level](record_of<postproc_handle>(at), from, pixels, row.in_place ? in : out);
      if (row.in_place) std::copy_n(in, pixels * j.out(), out);
      return 1u;
    };
    const std::size_t dst_bytes = pixels * j.out() * u32(row.out) / 8;
    const kit::bytes out = h.line(packed(src, row.in == 16), dst_bytes, run);
    EXPECT_EQ(unpacked(out, row.out == 16), postproc_reference{j}.line(src));
  }
}

TEST(postproc_rows, equal_the_definition) {
  const curve_table a = random_curves(1, 11), b = random_curves(1, 12);
  for (const postproc_row& row : postproc_rows()) {
    for (const u32 more : {u32{0}, VRK_COMPOSE, VRK_MID10}) {
      const u32 flags = more | (row.in == 16 ? VRK_IN16 : 0) | (row.out == 16 ? VRK_OUT16 : 0);
      const postproc_job jobs[] = {{4, {}, {}, flags},
                                   {4, random_curves(4), {{{}, a, {}, b}}, flags},
                                   {4, random_curves(4), {}, flags},
                                   {4, {}, {{a, {}, b}}, flags},
                                   {6, {}, {{{}, a, {}, {}, b}}, flags},
                                   {1, random_curves(1), {a}, flags},
                                   {4, counting_curves(4, 6), {{{}, a, b, {}, {}, b}}, flags}};
      for (const postproc_job& j : jobs) {
        if (row.four && (j.in() != 4 || j.out() != 4)) continue;
        for (const cpu_level level : levels_of_this_machine()) {
          if (level != cpu_level::base && row.kernel[level] == row.kernel.base) continue;
          SCOPED_TRACE(testing::Message() << row.in << " to " << row.out << " bits, in place " << row.in_place
                                          << ", level " << int(level) << ", job " << &j - jobs);
          expect_row_as_defined(row, level, j);
        }
      }
    }
  }
}

}  // namespace
