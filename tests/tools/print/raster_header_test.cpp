// Headers of written pages: what the page before them said goes on, as long as it is true.
#include "tools/print/raster_header.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace vrk::tool;

// A6 with margins of 10 and 20 points, 268 x 360 points of picture at 100 dpi across and 200 down.
page_header page_with_margins() {
  page_header page{};
  cups_page_header2_t& cups = page.cups;
  std::strcpy(cups.MediaType, "Glossy");
  std::strcpy(cups.cupsPageSizeName, "A6.Mine");
  cups.MediaPosition = 3;
  cups.Duplex = cups.Tumble = CUPS_TRUE;
  cups.NumCopies = 2;
  cups.cupsInteger[0] = 7;
  cups.PageSize[0] = 298, cups.PageSize[1] = 420;
  cups.cupsPageSize[0] = 297.6f, cups.cupsPageSize[1] = 419.5f;
  cups.Margins[0] = 10, cups.Margins[1] = 20;
  cups.cupsImagingBBox[0] = 10;
  cups.HWResolution[0] = 100, cups.HWResolution[1] = 200;
  cups.cupsWidth = 372, cups.cupsHeight = 1000;
  return page;
}

TEST(raster_header, goes_on_with_the_dots_of_the_same_paper) {
  const page_header page = page_with_margins();
  const cups_page_header2_t same = cups_header({744, 4000, {200, 800}}, &page);
  EXPECT_EQ(same.HWResolution[1], 800U);
  EXPECT_EQ(same.cupsHeight, 4000U);
  EXPECT_EQ(same.PageSize[0], 298U);
  EXPECT_EQ(same.cupsPageSize[1], 419.5f);
  EXPECT_EQ(same.Margins[1], 20U);
  EXPECT_EQ(same.cupsImagingBBox[0], 10.f);
  EXPECT_STREQ(same.cupsPageSizeName, "A6.Mine");
  EXPECT_STREQ(same.MediaType, "Glossy");
  EXPECT_EQ(same.cupsInteger[0], 7U);
  EXPECT_TRUE(same.NumCopies == 2 && same.MediaPosition == 3 && same.Tumble);
}

TEST(raster_header, says_the_paper_anew_where_the_page_has_another_size) {
  const page_header page = page_with_margins();
  const cups_page_header2_t other = cups_header({1240, 1748, {300, 300}}, &page);
  EXPECT_TRUE(other.PageSize[0] == 298 && other.PageSize[1] == 420 && other.Margins[1] == 0);
  EXPECT_EQ(other.cupsImagingBBox[0], 0.f);
  EXPECT_STREQ(other.cupsPageSizeName, "A6");
  EXPECT_STREQ(other.MediaType, "Glossy");
  EXPECT_EQ(cups_header({100, 100, {100, 100}}, nullptr).NumCopies, 1U);
}

TEST(raster_header, means_the_same_in_the_other_kind_of_stream) {
  page_header page = page_with_margins();
  const raster size{1240, 1748, {300, 300}};
  const cups_page_header2_t pwg = pwg_header(size, "black_1", &page);
  EXPECT_STREQ(pwg.MediaType, "Glossy");
  EXPECT_TRUE(pwg.Duplex && pwg.NumCopies == 2 && pwg.MediaPosition == 3);
  EXPECT_EQ(pwg.cupsInteger[CUPS_RASTER_PWG_TotalPageCount], 0U);
  EXPECT_EQ(pwg.cupsInteger[CUPS_RASTER_PWG_ImageBoxBottom], 1748U);
  page.cups = pwg;
  std::strcpy(page.cups.MediaClass, "PwgRaster");  // as libcups writes and reads it
  page.cups.cupsInteger[CUPS_RASTER_PWG_TotalPageCount] = 5;
  page.cups.cupsInteger[CUPS_RASTER_PWG_FeedTransform] = unsigned(-1);
  const cups_page_header2_t cups = cups_header(size, &page);
  EXPECT_STREQ(cups.MediaClass, "");
  EXPECT_STREQ(cups.cupsPageSizeName, "A6");
  EXPECT_EQ(cups.cupsInteger[CUPS_RASTER_PWG_ImageBoxBottom], 0U);
  const cups_page_header2_t again = pwg_header(size, "black_1", &page);
  EXPECT_EQ(again.cupsInteger[CUPS_RASTER_PWG_TotalPageCount], 0U);
  EXPECT_EQ(again.cupsInteger[CUPS_RASTER_PWG_FeedTransform], unsigned(-1));
}

}  // namespace
