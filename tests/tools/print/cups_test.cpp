// Prints as CUPS and PWG raster, beside the same prints as plane files.
#include <cups/raster.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/tools/print/print_job.h"
#include "tools/image/image_reader.h"

namespace {

using namespace vrk::test;

struct cups_print : print_job {};

TEST_F(cups_print, has_the_dots_of_the_plane_files) {
  const std::vector<const char*> kcmy{"k", "c", "m", "y"}, kcmycm{"k", "c", "m", "y", "lc", "lm"};
  const struct {
    const char *dots, *form;
    cups_cspace_t space;
    unsigned bits, pixel, levels;
    std::vector<const char*> planes;  // in the order of the samples
  } cases[] = {
      {"--inks 1", "cups", CUPS_CSPACE_K, 1, 1, 2, {"k"}},
      {"", "cups", CUPS_CSPACE_KCMY, 1, 4, 2, kcmy},
      {"--cells 2x2", "cups --order banded", CUPS_CSPACE_KCMY, 1, 1, 2, kcmy},
      {"--levels 3", "cups --order planar", CUPS_CSPACE_KCMY, 2, 2, 3, kcmy},
      {"--inks 6", "cups", CUPS_CSPACE_KCMYcm, 1, 8, 2, kcmycm},
      {"--inks 6 --levels 4", "cups --order planar", CUPS_CSPACE_KCMYcm, 2, 2, 4, kcmycm},
      {"--inks 6 --levels 4", "cups", CUPS_CSPACE_KCMYcm, 2, 16, 4, kcmycm},
      {"--inks 6 --levels 16", "cups --order chunky", CUPS_CSPACE_KCMYcm, 4, 24, 16, kcmycm},
      {"--inks 1", "pwg", CUPS_CSPACE_K, 1, 1, 2, {"k"}},
      {"--inks 1 --levels 4", "pwg", CUPS_CSPACE_K, 8, 8, 4, {"k"}},
      {"", "pwg", CUPS_CSPACE_CMYK, 8, 32, 2, {"c", "m", "y", "k"}},
  };
  for (const auto& c : cases) {
    const std::string page = busy_page(), options = c.dots + std::string(" --no-preview --dpi 300x150 --size A6 ");
    print(page, options);
    std::filesystem::rename(dir_ / "out", dir_ / "planes");
    print(page, options + "--format " + c.form);
    const bool pwg = c.form == std::string("pwg");
    const std::string file = load(path(pwg ? "out/print.pwg" : "out/print.ras"));
    std::size_t at = 0;
    const auto give = [&](unsigned char* to, std::size_t most) {
      const std::size_t count = std::min(most, file.size() - at);
      std::copy_n(file.begin() + std::ptrdiff_t(at), count, to);
      at += count;
      return ssize_t(count);
    };
    auto call = [](void* self, unsigned char* to, std::size_t most) {
      return (*static_cast<decltype(give)*>(self))(to, most);
    };
    cups_raster_t* const raster =
        cupsRasterOpenIO(call, const_cast<void*>(static_cast<const void*>(&give)), CUPS_RASTER_READ);
    cups_page_header2_t header{};
    ASSERT_EQ(cupsRasterReadHeader2(raster, &header), 1u) << c.form;
    EXPECT_EQ(header.cupsColorSpace, c.space) << c.form;
    EXPECT_EQ(header.cupsNumColors, c.planes.size());
    ASSERT_EQ(header.cupsBitsPerColor, c.bits) << c.form;
    ASSERT_EQ(header.cupsBitsPerPixel, c.pixel) << c.form;
    EXPECT_EQ(header.HWResolution[0], 2 * header.HWResolution[1]);
    EXPECT_EQ(header.PageSize[0], 298u);  // points of A6
    EXPECT_EQ(header.PageSize[1], 420u);
    EXPECT_STREQ(header.cupsPageSizeName, pwg ? "iso_a6_105x148mm" : "A6");
    const std::size_t line = header.cupsBytesPerLine, inks = c.planes.size();
    const bool planar = header.cupsColorOrder == CUPS_ORDER_PLANAR, mixed = header.cupsColorOrder == CUPS_ORDER_CHUNKED;
    std::string all(line * header.cupsHeight * (planar ? inks : 1), '\0');
    for (std::size_t from = 0; from < all.size(); from += line) {
      ASSERT_EQ(cupsRasterReadPixels(raster, reinterpret_cast<unsigned char*>(&all[from]), unsigned(line)), line);
    }
    cupsRasterClose(raster);
    EXPECT_EQ(at, file.size());
    for (std::size_t p = 0; p < inks; ++p) {
      const auto plane = vrk::tool::open_image(path("planes/") + c.planes[p] + (c.levels == 2 ? ".pbm" : ".pgm"));
      ASSERT_EQ(plane->width(), header.cupsWidth);
      ASSERT_EQ(plane->height(), header.cupsHeight);
      std::vector<std::uint8_t> paper(plane->width());
      const std::size_t row = header.cupsColorOrder == CUPS_ORDER_BANDED ? line / inks : line;
      for (unsigned y = 0; y < plane->height(); ++y) {
        plane->read_line(paper.data());
        const std::size_t start = planar ? (p * plane->height() + y) * line : y * line + (mixed ? 0 : p * row);
        for (std::size_t x = 0; x < paper.size(); ++x) {
          const std::size_t bit = x * c.pixel + (mixed ? c.pixel - (inks - p) * c.bits : 0), full = (1U << c.bits) - 1;
          const std::size_t sample = std::uint8_t(all[start + bit / 8]) >> (8 - c.bits - bit % 8) & full;
          const auto level = std::size_t(std::lround((255 - paper[x]) * (c.levels - 1) / 255.0));
          ASSERT_EQ(sample, std::size_t(std::lround(double(level * full) / (c.levels - 1)))) << c.form << x << " " << y;
        }
      }
    }
    std::filesystem::remove_all(dir_ / "planes");
  }
}

TEST_F(cups_print, says_what_a_stream_cannot_hold) {
  const std::string page = save("page.ppm", flat_page(8, 8));
  expect_complaint(page, "--format pwg --inks 6", "expected --inks 1 or 4");
  expect_complaint(page, "--format pwg --order planar", "--order belongs to --format cups");
}

}  // namespace
