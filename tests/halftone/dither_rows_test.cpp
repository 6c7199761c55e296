// Every row of the dither kernels.
#include "halftone/dither/dither_kernels.h"
#include "tests/halftone/dither_reference.h"

namespace {

using namespace vrk;

// In a handle of one plane, whatever row creation chose for it. More levels than the bits can tell show how a row
// merges them.
TEST(dither_rows, equal_the_definition) {
  const std::span<const dither_row> rows = dither_rows();
  for (std::size_t number = 0; number < rows.size(); ++number) {
    const auto [bits, adds, code, one_interval] = rows[number].packing;
    test::dither_mix of{.planes = 1, .colour_bits = 0, .k_bits = bits, .adds = adds};
    if (code != k_code::level) of.codes = {0, code == k_code::low_first ? 1u : 2u, 3};
    for (const u32 flags : {VRK_K_CODE3, VRK_K_CODE3 | VRK_IN16}) {
      const u16 top = has(flags, VRK_IN16) ? 1023 : 255;
      kit::dither_table table = test::make_table(of, top, bits);
      test::samples& levels = table.planes[k_table_slot].level_values;
      if (one_interval) levels = {0, top};
      if (code != k_code::level) levels = {0, u16(top / 3), top};
      if (!one_interval && code == k_code::level) levels = test::samples(bits == 8 ? 255 : (1u << bits) + 3);
      test::expect_lines_of_definition(table, flags, of, 7, [number](void* handle) {
        record_of<dither_handle>(handle).plane[k_table_slot].row = u8(number);
      });
    }
  }
}

}  // namespace
