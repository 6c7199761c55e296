// Every row of the dither kernels.
#include "halftone/dither/dither_kernels.h"
#include "tests/halftone/dither_reference.h"
#include "tests/levels.h"

namespace {

using namespace vrk;

// Of the K plane, in handles of one, four and six, whatever row creation chose for it. More levels than the bits can
// tell show how a row merges them. Matrices are narrower and wider than vectors.
void expect_row_as_defined(u32 number, u32 planes, cpu_level level, u32 flags) {
  const dither_row& row = dither_rows()[number];
  const auto [bits, merge, code] = row.packing;
  const u16 top = has(flags, VRK_IN16) ? 1023 : 255;
  test::dither_mix of{planes, bits, bits, {}, merge == dither_merge::adds};
  if (code != k_code::level) of.codes = {0, code == k_code::low_first ? 1u : 2u, 3};
  for (const u32 width : {1u, 9u, 16u, 31u, 33u, 255u}) {
    kit::dither_table table = test::make_table(of, top, bits + width);
    kit::dither_plane& k = table.planes[k_table_slot];
    k.width = width;
    k.matrix.resize(width * k.height, 77);
    if (code != k_code::level) k.level_values = {0, u16(top / 3), top};
    if (merge != dither_merge::fits) k.level_values = test::samples((1u << bits) + 3);
    test::expect_lines_of_definition(table, flags, of, 7, [=](void* handle) {
      auto& h = record_of<dither_handle>(handle);
      h.plane[k_table_slot].row = u8(number);
      h.level = level;
    });
  }
}

TEST(dither_rows, equal_the_definition) {
  for (u32 number = 0; number < dither_rows().size(); ++number) {
    const auto& stretch = dither_rows()[number].stretch;
    for (const cpu_level level : test::levels_of_this_machine()) {
      if (level != cpu_level::base && stretch[level] == stretch.base) continue;
      SCOPED_TRACE(testing::Message() << "row " << number << ", level " << int(level));
      for (const u32 planes : {1u, 4u, 6u}) expect_row_as_defined(number, planes, level, VRK_K_CODE3);
      if (level == cpu_level::base) expect_row_as_defined(number, 1, level, VRK_K_CODE3 | VRK_IN16);
    }
  }
}

}  // namespace
