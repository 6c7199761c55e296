// Every row of the family of line kernels, called as it is.
#include "base/carver.h"
#include "base/flags.h"
#include "halftone/ed/ed_kernels.h"
#include "tests/halftone/ed_job.h"

namespace {

using namespace vrk;
using namespace vrk::test;

void expect_levels_of_definition(const ed_row& row, unsigned width, std::mt19937& random) {
  const ed_tables tables = random_ed_tables({.planes = row.planes, .wild = width % 2 != 0}, random);
  ed_reference reference(tables, width, row.flags);
  ed_library library(tables, width, row.flags);
  library.start(width, 0, 0), reference.start(width, 0, 0);
  ed_handle& h = record_of<ed_handle>(library.get());
  EXPECT_EQ(&ed_rows()[h.kernel], &row);
  for (; h.line_counter < 4; ++h.line_counter) {
    const samples values = random_samples(width * row.planes, row.flags, random);
    guarded_copy src(packed(values, has(row.flags, VRK_IN16)));
    (h.line_counter % 2 == 0 ? row.even : row.odd)(h, src.data());
    reference.line(values);
    for (std::size_t p = 0; p < row.planes; ++p) {
      ASSERT_TRUE(std::ranges::equal(reference.levels()[p], std::span(h.level_line.get() + p * width, width)))
          << row.planes << " planes, flags " << row.flags << ", width " << width << ", line " << h.line_counter;
    }
  }
}

TEST(ed_rows, give_the_levels_of_the_definition) {
  std::mt19937 random(9);
  for (const ed_row& row : ed_rows()) {
    for (const unsigned width : {0u, 1u, 2u, 3u, 4u, 5u, 17u, 1000u, 1001u}) {
      expect_levels_of_definition(row, width, random);
    }
  }
}

}  // namespace
