#include <numeric>

#include "tests/csc/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;

TEST(csc2, grids_take_one_or_three_input_samples_and_curves_one) {
  const bytes grid = random_table(4, 2, 1).encode(), curve = random_curves(1).encode();
  for (const unsigned samples : {0u, 1u, 2u, 3u, 4u, 0x101u, 0x103u, 0x200u}) {
    for (const bytes& image : {grid, curve}) {
      const auto create = [&](void* mem) { return create_csc(image, 4, samples, 0, mem); };
      if ((samples & 0xFF) == 1 || ((samples & 0xFF) == 3 && image == grid)) {
        handle taken(create);
      } else {
        expect_refused(create, std::to_string(samples));
      }
    }
  }
}

// From the table's bytes: C, M, Y, K and C, fifth, M, sixth, Y, K.
TEST(csc2, table_samples_are_brought_into_plane_order) {
  for (const unsigned channels : {4u, 6u}) {
    bytes image = random_table(channels, 2, 1).encode();
    image[11] = 3;  // raw8
    image.resize(12 + 6 * 2 + 8 * channels);
    std::iota(image.begin() + 12 + 6 * 2, image.end(), std::uint8_t{1});
    const samples expected = channels == 4 ? samples{4, 1, 2, 3} : samples{6, 1, 3, 5, 2, 4};
    EXPECT_EQ(converter(image, 0).run({0, 0, 0}, 1, channels), expected);
  }
}

// A layout means nothing to them.
TEST(csc2, curves) {
  std::uint32_t layout = 0;
  for (const std::uint32_t flags : csc_flags) {
    std::vector<rgb> pixels(flags & VRK_IN16 ? 65536 : 256);
    for (unsigned level = 0; level < pixels.size(); ++level) pixels[level].fill(level);
    expect_as_reference(by_curve(flags), pixels, layout++ % 4);
  }
}

}  // namespace
