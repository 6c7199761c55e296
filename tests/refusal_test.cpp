// Tables that are refused: what their headers must hold and how long they must be. The kit's own judgement, which tells
// people why, stands beside the library's: a reason exactly when the library refuses.
#include "kit/explain.h"
#include "kit/presets.h"
#include "tests/csc/csc_reference.h"
#include "tests/halftone/ed_job.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;

using create_fn = std::function<std::uint32_t(std::uint32_t size, const void* image, void* mem)>;
using why_fn = std::function<vrk::kit::refusal(const bytes&)>;

struct kind {
  std::string name;
  bytes good;
  std::size_t header;  // bytes at the front that are tried with other values
  create_fn create;
  why_fn why_refused;
  std::size_t for_size_call = SIZE_MAX;  // bytes that satisfy the size call, where it does not want the whole image
};

// Grids of 2, 3 and 5 points, which leave every tail in the last byte, and a tone curve.
void add_csc_kinds(std::vector<kind>& all, std::uint32_t flags) {
  using namespace vrk::kit;
  const bool prec12 = flags != 0;
  const create_fn csc1 = [=](auto n, auto* image, auto* mem) { return vrk_create_csc1(n, image, flags, mem); };
  const create_fn csc2 = [=](auto n, auto* image, auto* mem) { return vrk_create_csc2(n, image, 1, flags, mem); };
  const why_fn why_csc1 = [=](auto& image) { return why_refused_csc1(image, prec12); };
  const why_fn why_csc2 = [=](auto& image) { return why_refused_csc2(image, 1, prec12); };
  for (const unsigned points : {2u, 3u, 5u}) {
    for (const unsigned channels : {3u, 4u, 6u}) {
      for (const grid_encoding encoding : encodings(channels)) {
        color_table table = random_table(channels, points, 2);
        table.encoding = encoding;
        const bool first = channels == 3;
        all.push_back({"grid of " + std::to_string(channels) + " channels, encoding " + std::to_string(int(encoding)),
                       table.encode(), points == 3 ? 12 + 6 * points : 0, first ? csc1 : csc2,
                       first ? why_csc1 : why_csc2, 13});
      }
    }
  }
  all.push_back({"csc1 subtype", subtype_table("gray"), 8, csc1, why_csc1});
  all.push_back({"csc2 curve", random_curves(1).encode(), 12, csc2, why_csc2, 13});
}

std::vector<kind> kinds() {
  using namespace vrk::kit;
  std::vector<kind> all;
  for (const std::uint32_t flags : {0u, VRK_PREC12}) add_csc_kinds(all, flags);

  std::mt19937 random(3);
  const ed_tables six = random_ed_tables({.planes = 6}, random);
  const ed_tables cells = random_ed_tables({.planes = 6, .extended = true}, random);
  edtb_table few_rows = ed_distribution();
  few_rows.rows.resize(9);  // one byte away from none
  const bytes spread = few_rows.encode(), levels = six.params.encode();
  const auto with_spread = [=](auto size, auto* image, void* mem) {
    return vrk_create_ed(20, std::uint32_t(spread.size()), spread.data(), size, image, 0, mem);
  };
  const auto with_levels = [=](auto size, auto* image, void* mem) {
    return vrk_create_ed(20, size, image, std::uint32_t(levels.size()), levels.data(), 0, mem);
  };
  edpr_table four = ed_parameters(4, 4);
  four.planes[5] = four.planes[0];  // in use, but not produced without the fifth
  all.push_back({"edtb", spread, 12, with_levels, why_refused_edtb});
  all.push_back({"edpr of six planes", levels, 24, with_spread, why_refused_edpr});
  all.push_back({"edpr of four planes", four.encode(), 24, with_spread, why_refused_edpr});
  all.push_back({"edpr of cells", cells.params.encode(), 40, with_spread, why_refused_edpr});

  const auto dither = [](auto size, auto* image, void* mem) { return vrk_create_dither(20, size, image, 0, mem); };
  for (const unsigned planes : {1u, 4u, 6u}) {
    dither_table table = dither_parameters(planes, 3, "bayer4");
    table.planes[3].width = 3, table.planes[3].height = 4;
    table.planes[3].matrix.resize(3 * 4);
    all.push_back({"dith", table.encode(), 32, dither, why_refused_dith});
  }
  return all;
}

// Of the kind that its converter takes. Nobody knows its samples before they are decoded.
bool is_delta_stream(const bytes& image) {
  return image.size() > 11 && image[0] == 'c' && image[11] == (image[3] == '1' ? 7 : 6);
}

struct verdict {
  std::uint32_t size;  // that the size call tells
  bool refused;        // by the build call
};

verdict judged(const kind& k, const bytes& image) {
  guarded_copy readable(image);
  const std::uint32_t size = k.create(readable.size(), readable.data(), nullptr);
  fenced_block memory(std::max(size, 4096u));
  const bool refused = k.create(readable.size(), readable.data(), memory.data()) == 0;
  EXPECT_TRUE(size != 0 ? memory.fences_intact() : refused && memory.untouched());
  const vrk::kit::refusal why = k.why_refused(image);
  EXPECT_EQ(refused, bool(why)) << why.text();
  return {size, refused};
}

TEST(refusals, of_header_bytes) {
  for (const kind& k : kinds()) {
    const verdict good = judged(k, k.good);
    ASSERT_FALSE(good.size == 0 || good.refused) << k.name;
    for (std::size_t at = 0; at < k.header; ++at) {
      for (const std::uint8_t value : header_values) {
        SCOPED_TRACE(k.name + ", byte " + std::to_string(at) + " = " + std::to_string(value));
        bytes image = k.good;
        image.resize(3 * image.size());  // long enough for most of what a header announces
        image[at] = value;
        const bool is_grid = image[0] == 'c' && k.header > 12, more_points = is_grid && at == 10 && value > 1;
        if (more_points && value > 32) continue;  // only large
        const auto [size, refused] = judged(k, image);
        const bool by_build_call_alone = more_points || (is_grid && at > 11) || is_delta_stream(image);
        EXPECT_TRUE(refused == (size == 0) || by_build_call_alone);
      }
    }
  }
}

TEST(refusals, of_every_part_of_a_table_and_of_none) {
  for (const kind& k : kinds()) {
    const std::uint32_t size = judged(k, k.good).size;
    for (std::size_t length = 0; length < k.good.size();
         length += length < 100 || length + 100 > k.good.size() ? 1 : 53) {
      SCOPED_TRACE(k.name + " cut to " + std::to_string(length));
      const verdict part = judged(k, {k.good.begin(), k.good.begin() + std::ptrdiff_t(length)});
      EXPECT_EQ(part.size, length < k.for_size_call ? 0 : size);
      EXPECT_TRUE(part.refused);
    }
    expect_refused([&](void* mem) { return k.create(std::uint32_t(k.good.size()), nullptr, mem); }, k.name);
  }
}

// Curve images of the stages that are not told how long they are.
struct consumer {
  const char* table;
  unsigned curves;
  std::uint32_t (*create)(const void* image, void* mem);
  vrk::kit::refusal (*why_refused)(const bytes& image, unsigned curves);
  bool judges_in_both_calls = false;
};

// With a main table of six planes, or with a table of K alone.
std::uint32_t create_postproc(bool main, const void* at, void* mem) {
  return vrk_create_postproc(main ? 6 : 1, main, at, !main, at, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                             nullptr, 0, mem);
}

using vrk::kit::why_refused_curves, vrk::kit::why_refused_main_curves;

const consumer consumers[] = {
    {"curve", 1, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 1, at, 0, nullptr, 0, mem); },
     why_refused_curves},
    {"curve", 1, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 1, at, 0, nullptr, 0, mem); },
     why_refused_curves},
    {"RGB curves", 3, [](auto* at, auto* mem) { return vrk_create_preproc(nullptr, 0, 0, 0, nullptr, 1, at, 0, mem); },
     why_refused_curves},
    {"RGB curves", 3, [](auto* at, auto* mem) { return vrk_create_preproc2(nullptr, 0, 0, nullptr, 1, at, 0, mem); },
     why_refused_curves},
    {"main table", 6, [](auto* at, auto* mem) { return create_postproc(true, at, mem); }, why_refused_main_curves,
     true},
    {"plane table", 1, [](auto* at, auto* mem) { return create_postproc(false, at, mem); },
     [](auto& image, unsigned) { return vrk::kit::why_refused_plane_curve(image); }, true},
};

// The size call reads no further than the header.
TEST(refusals, of_curves_whose_length_nobody_tells) {
  for (const consumer& by : consumers) {
    const bytes good = random_curves(by.curves).encode();
    const std::uint32_t size = by.create(good.data(), nullptr);
    EXPECT_EQ(by.why_refused(good, by.curves).text(), "");
    EXPECT_TRUE(by.why_refused({good.begin(), good.end() - 1}, by.curves));
    for (std::size_t at = 0; at < 12; ++at) {
      for (const std::uint8_t value : header_values) {
        bytes image = good;
        image[at] = value;
        const vrk::kit::refusal why = by.why_refused(image, by.curves);
        const auto where = testing::Message() << by.table << ", byte " << at << " = " << +value << ": " << why.text();
        EXPECT_TRUE(!why.offset || (*why.offset <= at && at < *why.offset + 4)) << where;
        guarded_copy whole(image), header({image.data(), 12});
        EXPECT_EQ(by.create(header.data(), nullptr) == 0, bool(why)) << where;
        fenced_block mem(size);
        EXPECT_EQ(by.create(whole.data(), mem.data()) == 0, bool(why) && by.judges_in_both_calls) << where;
      }
    }
    expect_refused([&](void* mem) { return by.create(nullptr, mem); }, by.table);
  }
}

}  // namespace
