// Prints as TIFF, beside the same prints as plane files.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/tools/image/made_tiff.h"
#include "tests/tools/print/print_job.h"
#include "tools/image/image_reader.h"

namespace {

using namespace vrk::test;

struct tiff_print : print_job {};

TEST_F(tiff_print, has_the_dots_of_the_plane_files) {
  const struct {
    const char* options;
    unsigned bits, levels;
    std::vector<const char*> planes;  // in the order of the samples
    std::string inks;                 // as TIFF separates them
  } cases[] = {
      {"--inks 1", 1, 2, {"k.pbm"}, ""},
      {"", 1, 2, {"c.pbm", "m.pbm", "y.pbm", "k.pbm"}, "cyan,magenta,yellow,black,"},
      {"--cells 2x2", 1, 2, {"c.pbm", "m.pbm", "y.pbm", "k.pbm"}, "cyan,magenta,yellow,black,"},
      {"--levels 3 --inks 6",
       2,
       3,
       {"c.pgm", "m.pgm", "y.pgm", "k.pgm", "lc.pgm", "lm.pgm"},
       "cyan,magenta,yellow,black,light cyan,light magenta,"},
      {"--levels 16 --inks 1", 4, 16, {"k.pgm"}, ""},
  };
  for (const auto& c : cases) {
    const std::string page = busy_page(), options = c.options + std::string(" --dpi 300x150 --size 3x8cm ");
    print(page, options);
    std::filesystem::rename(dir_ / "out", dir_ / "planes");
    print(page, options + "--format tiff");
    TIFF* const tiff = TIFFOpen(path("out/print.tif").c_str(), "r");
    ASSERT_NE(tiff, nullptr);
    const auto number = [&](std::uint32_t field) {
      std::uint16_t value = 0;
      return TIFFGetField(tiff, field, &value) != 0 ? value : 0U;
    };
    EXPECT_EQ(number(TIFFTAG_BITSPERSAMPLE), c.bits) << c.options;
    EXPECT_EQ(number(TIFFTAG_SAMPLESPERPIXEL), c.planes.size()) << c.options;
    EXPECT_EQ(number(TIFFTAG_PHOTOMETRIC), c.inks.empty() ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_SEPARATED);
    EXPECT_EQ(number(TIFFTAG_INKSET), c.inks.empty() ? 0 : c.planes.size() == 4 ? INKSET_CMYK : INKSET_MULTIINK);
    const char* names = nullptr;
    if (!c.inks.empty() && TIFFGetField(tiff, TIFFTAG_INKNAMES, &names) != 0) {
      std::string inks(names, c.inks.size());
      std::replace(inks.begin(), inks.end(), '\0', ',');
      EXPECT_EQ(inks, c.inks);
    }
    float across = 0, down = 0;
    TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &across);
    TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &down);
    std::vector<std::uint8_t> line(std::size_t(TIFFScanlineSize(tiff)));
    std::vector<std::unique_ptr<vrk::tool::image_reader>> planes;
    for (const char* const plane : c.planes) planes.push_back(vrk::tool::open_image(path("planes/") + plane));
    EXPECT_NEAR(across, planes[0]->width() / (3 / 2.54), 1) << c.options;
    EXPECT_NEAR(down, planes[0]->height() / (8 / 2.54), 1) << c.options;
    std::vector<std::uint8_t> paper(planes[0]->width());
    std::uint32_t height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    ASSERT_EQ(height, planes[0]->height());
    for (unsigned y = 0; y < height; ++y) {
      ASSERT_EQ(TIFFReadScanline(tiff, line.data(), y), 1);
      for (std::size_t p = 0; p < planes.size(); ++p) {
        planes[p]->read_line(paper.data());
        for (std::size_t x = 0; x < paper.size(); ++x) {
          const std::size_t bit = (x * planes.size() + p) * c.bits, full = (1U << c.bits) - 1;
          const std::size_t sample = line[bit / 8] >> (8 - c.bits - bit % 8) & full;
          const auto level = std::size_t(std::lround((255 - paper[x]) * (c.levels - 1) / 255.0));
          ASSERT_EQ(sample, std::size_t(std::lround(double(level * full) / (c.levels - 1)))) << c.options << x << y;
        }
      }
    }
    TIFFClose(tiff);
    std::filesystem::remove_all(dir_ / "planes");
  }
}

}  // namespace
