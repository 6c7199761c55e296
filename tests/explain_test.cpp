// What the kit says about refused tables: as often as the library refuses one, and never of a good one.
#include <gtest/gtest.h>
#include <vrk.h>

#include <functional>

#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/explain.h"
#include "kit/presets.h"

namespace {

using vrk::kit::bytes;

struct kind {
  const char* name;
  bytes good;
  unsigned header;  // bytes at the front that are tried with other values
  std::function<std::uint32_t(const bytes&, void* mem)> create;
  std::function<std::string(const bytes&)> explain;
};

std::uint32_t size_of(const bytes& image) { return std::uint32_t(image.size()); }

bytes grid(unsigned channels, vrk::kit::grid_encoding encoding) {
  vrk::kit::color_table table;
  table.encoding = encoding;
  table.grid = {3, channels, std::vector<std::uint16_t>(27 * channels, 0x8000)};
  return table.encode();
}

std::vector<kind> kinds() {
  using enum vrk::kit::grid_encoding;
  using namespace vrk::kit;
  std::vector<kind> all;
  const auto add_csc = [&all](const char* name, bytes good, unsigned header, unsigned input_samples) {
    const bool first = good[0] == 'c' && good[3] == '1';
    for (const std::uint32_t flags : {0u, VRK_PREC12}) {
      const auto create = [=](const bytes& image, void* mem) {
        return first ? vrk_create_csc1(size_of(image), image.data(), flags, mem)
                     : vrk_create_csc2(size_of(image), image.data(), input_samples, flags, mem);
      };
      const auto explain = [=](const bytes& image) {
        return first ? why_refused_csc1(image, flags != 0) : why_refused_csc2(image, input_samples, flags != 0);
      };
      all.push_back({name, good, header, create, explain});
    }
  };
  for (const grid_encoding encoding : {raw16, packed12, packed10, raw8}) {
    for (const unsigned channels : {3u, 4u, 6u}) add_csc("csc grid", grid(channels, encoding), 30, 3);
  }
  add_csc("csc1 subtype", subtype_table("gray"), 4, 3);
  add_csc("1dlt", curve_image{.curves = std::vector<curve>(1)}.encode(), 12, 1);

  const bytes spread = ed_distribution().encode(), levels = ed_parameters(4, 4).encode();
  const auto with_levels = [=](const bytes& image, void* mem) {
    return vrk_create_ed(20, size_of(spread), spread.data(), size_of(image), image.data(), 0, mem);
  };
  const auto with_spread = [=](const bytes& image, void* mem) {
    return vrk_create_ed(20, size_of(image), image.data(), size_of(levels), levels.data(), 0, mem);
  };
  const auto dither = [](const bytes& image, void* mem) {
    return vrk_create_dither(20, size_of(image), image.data(), 0, mem);
  };
  all.push_back({"edpr", levels, 24, with_levels, why_refused_edpr});
  all.push_back({"edpr of cells", cell_parameters(4, 2, 2, 5).encode(), 40, with_levels, why_refused_edpr});
  all.push_back({"edtb", spread, 12, with_spread, why_refused_edtb});
  for (const unsigned planes : {1u, 6u}) {
    all.push_back({"dith", dither_parameters(planes, 3, "bayer4").encode(), 32, dither, why_refused_dith});
  }
  return all;
}

bool refused(const kind& k, const bytes& image) {
  const std::uint32_t size = k.create(image, nullptr);
  if (size == 0) return true;
  std::vector<std::uint32_t> memory(size / 4 + 1);
  return k.create(image, memory.data()) == 0;
}

TEST(explain, finds_a_reason_exactly_when_the_library_refuses) {
  for (const kind& k : kinds()) {
    ASSERT_FALSE(refused(k, k.good)) << k.name;
    ASSERT_EQ(k.explain(k.good), "") << k.name;
    for (unsigned at = 0; at < k.header; ++at) {
      for (const unsigned value :
           {0, 1, 2, 3, 4, 5, 6, 7, 8, 16, 17, 32, int('0'), int('1'), int('2'), int('z'), int('{'), 128, 255}) {
        if (at == 10 && value > 'z') continue;  // a grid of so many points is only large
        bytes image = k.good;
        image[at] = std::uint8_t(value);
        const std::string why = k.explain(image);
        // A delta stream cannot be judged by its length; this one was made from another encoding.
        if (at == 11 && k.name[0] == 'c' && (value == 6 || value == 7)) continue;
        ASSERT_EQ(refused(k, image), !why.empty()) << k.name << ", byte " << at << " = " << value << ": " << why;
      }
    }
    for (std::size_t length = 0; length < k.good.size(); length += 1 + length / 64) {
      const bytes image(k.good.begin(), k.good.begin() + std::ptrdiff_t(length));
      const std::string why = k.explain(image);
      ASSERT_EQ(refused(k, image), !why.empty()) << k.name << " cut to " << length << " bytes: " << why;
    }
  }
}

// Images whose size the library is not told: by their headers only, and always long enough for what those announce.
TEST(explain, finds_a_reason_exactly_when_the_library_refuses_curves) {
  const vrk::kit::curve_image six{.curves = std::vector<vrk::kit::curve>(6)};
  for (unsigned at = 0; at < 12; ++at) {
    for (const unsigned value : {0, 1, 2, 3, 4, 6, 16, int('0'), int('1'), int('2'), int('z'), int('{'), 255}) {
      bytes three = six.encode(), main = six.encode();
      three[8] = 3;
      three[at] = main[at] = std::uint8_t(value);
      EXPECT_EQ(vrk_create_preproc(nullptr, 0, 0, 0, nullptr, 1, three.data(), 0, nullptr) == 0,
                !vrk::kit::why_refused_curves(three, 3).empty())
          << "byte " << at << " = " << value;
      EXPECT_EQ(vrk_create_postproc(6, 1, main.data(), 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                                    nullptr, 0, nullptr) == 0,
                !vrk::kit::why_refused_main_curves(main, 6).empty())
          << "byte " << at << " = " << value;
    }
  }
  const bytes good = six.encode(), cut(good.begin(), good.end() - 1);
  EXPECT_EQ(vrk::kit::why_refused_main_curves(good, 6), "");
  EXPECT_NE(vrk::kit::why_refused_main_curves(cut, 6), "");
}

}  // namespace
