#include <numeric>

#include "tests/csc/csc_reference.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::kit::curve_image;

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

// All levels against straight lines drawn between the neighbouring entries.
TEST(csc2, curves) {
  for (const std::uint32_t flags : {0u, VRK_OUT16, VRK_IN16, VRK_IN16 | VRK_OUT16}) {
    const curve_image image = random_curves(1, flags);
    const auto& c = image.curves[0];
    samples in(flags & VRK_IN16 ? 65536 : 256), expected;
    std::iota(in.begin(), in.end(), std::uint16_t{0});
    for (const unsigned level : in) {
      unsigned value;
      if (flags & VRK_IN16) {
        unsigned n = level / 64;  // the entry at or below the level
        const auto at = [](unsigned entry) { return entry * 64 + entry / 16; };
        if (at(n) > level) --n;
        const double slope = n == 1023 ? 0 : (double(c[n + 1]) - c[n]) / (at(n + 1) - at(n));
        value = unsigned((level - at(n)) * slope + c[n] + (level == at(n) ? 0 : 0.5));
      } else {
        value = c[level << 2 | level >> 6];
      }
      expected.push_back(std::uint16_t(flags & VRK_OUT16 ? value : value >> 8));
    }
    EXPECT_EQ(converter(image.encode(), flags, 1).run(in, unsigned(in.size()), 1), expected) << flags;
  }
}

}  // namespace
