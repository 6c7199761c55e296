// Raster streams: the samples of every kind, and what happens to pages where a stream is wrong.
#include "tools/raster/raster_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "tests/tools/print/print_job.h"
#include "tests/tools/raster/made_raster.h"
#include "tools/image/image_reader.h"
#include "tools/image/image_writer.h"

namespace {

using namespace vrk::test;
namespace fs = std::filesystem;

constexpr unsigned width = 21, height = 13;

// Different for neighbours and colours, with runs, in the range of `bits`.
samples drawn(unsigned colors, unsigned bits, unsigned seed = 0) {
  samples all;
  for (unsigned i = 0; i < width * height * colors; ++i) {
    const unsigned x = i / colors % width, y = i / colors / width, c = i % colors;
    all.push_back(std::uint16_t((x / 3 * 7919 + y * 104729 + c * 31337 + seed) % (1U << bits)));
  }
  return all;
}

struct raster : print_job {
  std::string stream(const std::string& name, const raster_kind& kind, unsigned pages = 1) const {
    std::vector<raster_page> all;
    for (unsigned p = 0; p < pages; ++p) all.push_back({width, height, drawn(kind.colors, kind.bits, p)});
    return save(name, make_raster(all, kind));
  }
  std::string plane(unsigned page, const std::string& name) const {
    return load(path("out/page-00" + std::to_string(page) + "/" + name + ".pbm"));
  }
  void print_over(const std::string& stream) const {
    CLI::App program;
    vrk::tool::add_print_command(program);
    program.parse("print " + stream + " -o " + path("out") + " --quiet " + few_points_);
  }
  std::string why_no_page(const std::string& path, std::uint64_t max_memory = 1 << 20) const {
    return complaint([&] {
      const auto page = vrk::tool::open_image(path, max_memory);
      std::vector<std::uint8_t> line(page->line_bytes());
      for (unsigned y = 0; y < page->height(); ++y) page->read_line(line.data());
    });
  }
};

TEST_F(raster, has_the_same_samples_in_every_order_depth_and_form) {
  const struct {
    raster_kind kind;
    std::vector<unsigned> places;  // of gray, R G B or C M Y K
    bool inverted = false;
  } cases[] = {
      {{CUPS_CSPACE_SW, 1, 8, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_PWG}, {0}},
      {{CUPS_CSPACE_W, 1, 1}, {0}},
      {{CUPS_CSPACE_K, 1, 1, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_PWG}, {0}, true},
      {{CUPS_CSPACE_K, 1, 16, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_COMPRESSED}, {0}, true},
      {{CUPS_CSPACE_SRGB, 3, 8, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_APPLE}, {0, 1, 2}},
      {{CUPS_CSPACE_ADOBERGB, 3, 16, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_PWG}, {0, 1, 2}},
      {{CUPS_CSPACE_RGB, 3, 16, CUPS_ORDER_BANDED}, {0, 1, 2}},
      {{CUPS_CSPACE_RGB, 3, 8, CUPS_ORDER_PLANAR, CUPS_RASTER_WRITE_COMPRESSED}, {0, 1, 2}},
      {{CUPS_CSPACE_CMY, 3, 8}, {0, 1, 2}, true},
      {{CUPS_CSPACE_CMYK, 4, 1}, {0, 1, 2, 3}},
      {{CUPS_CSPACE_CMYK, 4, 8, CUPS_ORDER_CHUNKED, CUPS_RASTER_WRITE_PWG}, {0, 1, 2, 3}},
      {{CUPS_CSPACE_CMYK, 4, 2, CUPS_ORDER_PLANAR}, {0, 1, 2, 3}},
      {{CUPS_CSPACE_KCMY, 4, 4, CUPS_ORDER_BANDED, CUPS_RASTER_WRITE_COMPRESSED}, {1, 2, 3, 0}},
  };
  for (const auto& c : cases) {
    const std::string file = stream("page.ras", c.kind);
    const unsigned colors = c.kind.colors, bits = c.kind.bits;
    const auto page = vrk::tool::open_image(file);
    ASSERT_EQ(page->width() * page->channels(), width * colors);
    ASSERT_EQ(page->height(), height);
    EXPECT_EQ(page->dpi()->x, 300);
    EXPECT_EQ(page->dpi()->y, c.kind.mode == CUPS_RASTER_WRITE_APPLE ? 300 : 150);
    EXPECT_EQ(page->bits(), bits == 16 ? 16u : 8u);
    const samples from = drawn(colors, bits);
    std::vector<std::uint8_t> line(page->line_bytes());
    const unsigned full = (1U << bits) - 1, scale = bits < 8 ? 255 / full : 1;
    for (unsigned y = 0; y < height; ++y) {
      page->read_line(line.data());
      const samples read = unpacked(line, bits == 16);
      for (unsigned i = 0; i < read.size(); ++i) {
        const unsigned stored = from[(y * width + i / colors) * colors + c.places[i % colors]];
        ASSERT_EQ(read[i], scale * (c.inverted ? full - stored : stored)) << "colour space " << c.kind.space << y << i;
      }
    }
  }
}

TEST_F(raster, of_version_1_is_read) {
  const std::string now = load(stream("now.ras", {}));
  const std::size_t header = sizeof(cups_page_header2_t);
  save("old.ras", "tSaR" + now.substr(4, sizeof(cups_page_header_t)) + now.substr(4 + header));
  summary(path("now.ras"), "--quiet");
  const std::string expected = plane(1, "m");
  summary(path("old.ras"), "--quiet");
  EXPECT_EQ(plane(1, "m"), expected);
}

// As machines of the other byte order send it.
TEST_F(raster, of_the_other_byte_order_is_read) {
  const std::string now = load(stream("now.ras", {CUPS_CSPACE_RGB, 3, 16, CUPS_ORDER_BANDED}));
  std::string other = now;
  const auto swap = [&](std::size_t at, std::size_t bytes) { std::reverse(&other[at], &other[at + bytes]); };
  swap(0, 4);
  const std::size_t first = 4 + offsetof(cups_page_header2_t, AdvanceDistance);
  const std::size_t end = 4 + offsetof(cups_page_header2_t, cupsString);
  for (std::size_t at = first; at < end; at += 4) swap(at, 4);
  for (std::size_t at = 4 + sizeof(cups_page_header2_t); at < other.size(); at += 2) swap(at, 2);
  summary(path("now.ras"), "--quiet");
  const std::string expected = plane(1, "m");
  summary(save("other.ras", other), "--quiet");
  EXPECT_EQ(plane(1, "m"), expected);
}

// A page is printed as the same picture is, at the resolution in its header unless another one is asked for.
TEST_F(raster, pages_print_as_pictures_do) {
  const std::string both = stream("both.ras", {CUPS_CSPACE_SRGB, 3, 8, CUPS_ORDER_BANDED}, 2);
  for (const std::string dpi : {"", "300x150", "72"}) {
    const std::string picture_dpi = dpi.empty() ? "300x150" : dpi;
    for (unsigned p = 0; p < 2; ++p) {
      const samples pixels = drawn(3, 8, p);
      // Only a picture that says its resolution is brought to another one.
      save("page.png", std::string());
      {
        vrk::tool::output_set files(dir_);
        const auto png = vrk::tool::write_png(files.add("page.png"), width, height, vrk::tool::resolution{300, 150});
        for (unsigned y = 0; y < height; ++y) {
          const std::string line(&pixels[y * width * 3], &pixels[(y + 1) * width * 3]);
          png->write_line(line.data());
        }
        png->finish();
        files.keep();
      }
      const std::vector<std::string> expected = print(path("page.png"), few_points_ + "--dpi " + picture_dpi).planes;
      summary(both, few_points_ + "--quiet" + (dpi.empty() ? "" : " --dpi " + dpi));
      for (unsigned i = 0; i < 4; ++i) EXPECT_EQ(plane(p + 1, std::string("kcmy").substr(i, 1)), expected[i]) << dpi;
    }
  }
}

TEST_F(raster, that_breaks_off_keeps_its_whole_pages) {
  for (const cups_mode_t mode : {CUPS_RASTER_WRITE, CUPS_RASTER_WRITE_PWG, CUPS_RASTER_WRITE_APPLE}) {
    const auto bytes_of = [&](unsigned pages) { return load(stream("whole.ras", {.mode = mode}, pages)); };
    const std::string four = bytes_of(4), three = bytes_of(3), two = bytes_of(2);
    EXPECT_EQ(complaint([&] { summary(save("four.ras", four), few_points_ + "--quiet"); }), "");
    EXPECT_TRUE(fs::exists(path("out/page-004/manifest.json")));
    fs::rename(path("out"), path("earlier"));
    for (const std::size_t cut : {two.size() + 1, two.size() + 20, three.size() - 1, three.size()}) {
      fs::remove_all(path("out"));
      fs::copy(path("earlier"), path("out"), fs::copy_options::recursive);
      const std::string part = save("part.ras", four.substr(0, cut));
      const std::string said = complaint([&] { print_over(part); });
      const unsigned whole = cut == three.size() ? 3 : 2;
      EXPECT_EQ(said.substr(0, part.size() + 28), whole == 3 ? "" : part + ", page 3: the stream breaks ") << cut;
      for (unsigned p = 1; p <= 4; ++p) {
        EXPECT_EQ(fs::exists(dir_ / "out" / ("page-00" + std::to_string(p))), p <= whole) << cut << " page " << p;
      }
      EXPECT_NE(load(path("out/manifest.json")).find("page-002"), std::string::npos);
    }
    fs::remove_all(path("earlier"));
    EXPECT_NE(why_no_page(save("short", four.substr(0, 3))), "");
    EXPECT_NE(why_no_page(save("sync", four.substr(0, mode == CUPS_RASTER_WRITE_APPLE ? 12 : 4))), "");
  }
  const auto five_announced = [](cups_page_header2_t& header) {
    header.cupsInteger[CUPS_RASTER_PWG_TotalPageCount] = 5;
  };
  const std::string few = make_raster({{width, height, drawn(3, 8), five_announced}}, {.mode = CUPS_RASTER_WRITE_PWG});
  EXPECT_NE(complaint([&] { summary(save("few.pwg", few), "--quiet"); }).find("ends after page 1, expected 5 pages"),
            std::string::npos);
}

TEST_F(raster, whose_header_lies_is_refused) {
  using header = cups_page_header2_t;
  const struct {
    std::function<void(header&)> lie;
    std::string said;
  } cases[] = {
      {[](header& h) { h.cupsWidth = 0; }, "has 0 x 13 pixels"},
      {[](header& h) { h.cupsWidth = 1000001; }, "has 1000001 x 13 pixels"},
      {[](header& h) { h.cupsHeight = 4000000000; }, "x 4000000000 pixels"},
      {[](header& h) { h.HWResolution[1] = 0; }, "has 0 dpi, expected 20 to 2400"},
      {[](header& h) { h.cupsBytesPerLine = 66; }, "has 66 bytes a line, expected 63"},
      {[](header& h) { h.cupsBytesPerLine = 2147483646; }, "has 2147483646 bytes a line, expected 63"},
      {[](header& h) { h.cupsNumColors = 4; }, "has 4 colours, expected 3"},
      {[](header& h) { h.cupsColorSpace = CUPS_CSPACE_CIELab; }, "has colour space 16, expected W, "},
      {[](header& h) { h.cupsColorOrder = cups_order_t(3); }, "has colour order 3"},
      {[](header& h) { std::memset(&h.cupsColorOrder, 0xD4, 4); }, "has colour order 3570717908"},
      {[](header& h) { std::memset(&h.cupsColorSpace, 0xD4, 4); }, "has colour space 3570717908"},
      {[](header& h) { h.cupsBitsPerColor = 10; }, "has 10 bits a colour"},
      {[](header& h) { h.cupsBitsPerPixel = 8; }, "has 8 bits a pixel, expected 24"},
  };
  for (const auto& c : cases) {
    std::string good = make_raster({{width, height, drawn(3, 8)}}, {});
    header changed;
    std::memcpy(&changed, &good[4], sizeof changed);
    c.lie(changed);
    std::memcpy(&good[4], &changed, sizeof changed);
    const std::string file = save("lie.ras", good), said = why_no_page(file);
    EXPECT_EQ(said.substr(0, file.size() + 8), file + ", page 1");
    EXPECT_NE(said.find(c.said), std::string::npos) << said;
  }
  const auto huge = [](header& h) { h.cupsWidth = h.cupsHeight = h.cupsBytesPerLine = 1000000; };
  const raster_kind planar{CUPS_CSPACE_RGB, 3, 8, CUPS_ORDER_PLANAR};
  const std::string file = save("huge.ras", make_raster({{width, height, drawn(3, 8), huge}}, planar));
  EXPECT_NE(why_no_page(file).find("is planar and so needs 2861023 MB of memory"), std::string::npos);
}

}  // namespace
