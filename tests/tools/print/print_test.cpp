// The program `vrk`: what it says when something is wrong, and tables out of blobs.
#include <gtest/gtest.h>

#include <numeric>

#include "kit/blob.h"
#include "kit/color_grids.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "kit/ink_model.h"
#include "kit/presets.h"
#include "kit/srgb.h"
#include "tests/tools/print/print_job.h"
#include "tools/image/image_reader.h"

namespace {

using namespace vrk::test;
namespace kit = vrk::kit;
namespace fs = std::filesystem;

struct tool : print_job {};

// Only files that a print can have made are removed for a manifest, and nothing else makes sense of one.
TEST_F(tool, a_print_trusts_no_manifest) {
  const std::string page = save("page.ppm", flat_page(8, 8)), victim = save("k.pgm", std::string("mine"));
  const auto print_beside = [&](const std::string& manifest) {
    fs::create_directories(dir_ / "beside");
    save("beside/letter.txt", std::string("mine"));
    save("beside/lc.pbm", std::string("an earlier print"));
    save("beside/manifest.json", manifest);
    CLI::App program;
    vrk::tool::add_print_command(program);
    testing::internal::CaptureStdout();
    program.parse("print " + page + " -o " + path("beside") + " --inks 1");
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(load(path("beside/letter.txt")) + load(victim), "minemine") << manifest;
    EXPECT_NE(load(path("beside/manifest.json")).find("\"k.pbm\""), std::string::npos);
    return !fs::exists(dir_ / "beside/lc.pbm");
  };
  EXPECT_TRUE(print_beside(R"({"planes": [{"file": "lc.pbm"}, {"file": "letter.txt"}, {"file": "../k.pgm"}]})"));
  EXPECT_TRUE(print_beside(R"({"pictures": ["lc.pbm", "k.pgm/../../k.pgm", 7]})"));
  for (const char* other : {"", "{", "[[[[", "7", R"({"planes": 7, "pictures": {"file": [1]}})"}) {
    EXPECT_FALSE(print_beside(other));
  }
}

kit::bytes changed(kit::bytes image, std::size_t at, std::uint8_t value) {
  image[at] = value;
  return image;
}

TEST_F(tool, prints_at_the_size_that_it_is_told) {
  const std::string page = save("page.ppm", flat_page(40, 20));
  const std::string options = few_points_ + "--dpi 254x127 --size 2x4cm ";
  const std::vector<std::string> planes = print(page, options).planes;
  const std::string header = "P4\n# 254 x 127 dpi\n200 200\n";
  EXPECT_EQ(planes.at(0).substr(0, header.size()), header);
  const auto small = vrk::tool::open_image(path("out/preview.png"));
  EXPECT_NEAR(small->dpi().value().x, 127, 0.1);
  EXPECT_NEAR(small->dpi().value().y, 127, 0.1);
  EXPECT_EQ(print(page, options + "--fill --rotate 0 --no-preview").planes.size(), 4u);
  EXPECT_FALSE(fs::exists(path("out/preview.png")) || fs::exists(path("out/detail.png")));
  print(page, options + "--preview-size 16");
  EXPECT_EQ(vrk::tool::open_image(path("out/preview.png"))->height(), 16u);
  for (const std::string wrong : {"--size 10x15", "--size A9", "--dpi nan", "--dpi 19", "--fit", "--rotate 45",
                                  "--fit --fill --size A4", "--no-preview --preview-size 100", "--preview-size 9"}) {
    expect_complaint(page, wrong, wrong.substr(2, 3));
  }
}

TEST_F(tool, says_what_it_has_printed) {
  const std::string page = save("page.ppm", flat_page(254, 127)), options = few_points_ + "--dpi 254 --post s:0.5 ";
  const std::string brief = summary(page, options), verbose = summary(page, options + "--verbose");
  EXPECT_EQ(std::count(brief.begin(), brief.end(), '\n'), 3);
  EXPECT_EQ(verbose.rfind(brief.substr(0, brief.find("Printed in")), 0), 0u) << verbose;
  EXPECT_NE(verbose.find("one table a channel"), std::string::npos) << verbose;
  EXPECT_EQ(summary(page, options + "--quiet"), "");
  const auto told = nlohmann::json::parse(summary(page, options + "--json"));
  EXPECT_NE(brief.find(": 254 x 127 pixels, 25.4 x 12.7 mm on paper at 254 dpi\n"), std::string::npos) << brief;
  EXPECT_EQ(told["mm"], nlohmann::json({25.4, 12.7}));
  for (const auto& plane : told["planes"]) {
    char share[32];
    std::snprintf(share, sizeof share, " %s %.2f %%", plane["plane"].get<std::string>().c_str(),
                  100 * plane["coverage"].get<double>());
    EXPECT_NE(brief.find(share), std::string::npos) << brief;
  }
  EXPECT_EQ(told["files"].size(), 7u);
  for (const std::string file : told["files"]) EXPECT_TRUE(fs::exists(file));
  expect_complaint(page, "--json --quiet", "excludes");
}

// A viewer averages sRGB levels when it makes a picture smaller. That is close to the tone only where neighbours are
// alike.
TEST_F(tool, a_preview_has_its_tone_in_every_viewer) {
  for (const char level : {'\x30', '\x80', '\xD0'}) {
    const std::string page = save("page.pgm", "P5 60 60 255\n" + std::string(60 * 60, level));
    const double black = print(page, "--inks 1").coverage.at(0);
    const auto preview = vrk::tool::open_image(path("out/preview.png"));
    std::vector<std::uint8_t> line(preview->line_bytes());
    double sum = 0;
    for (unsigned y = 0; y < preview->height(); ++y) {
      preview->read_line(line.data());
      sum += std::accumulate(line.begin(), line.end(), 0.0) / double(line.size());
    }
    const std::array<double, 1> none{0}, full{1};
    const kit::linear_rgb paper = kit::print_color(none), ink = kit::print_color(full);
    const double light = paper[1] + (ink[1] - paper[1]) * black;
    EXPECT_NEAR(sum / preview->height(), 255 * kit::linear_to_srgb(light), 4) << int(level);
  }
}

TEST_F(tool, says_why_a_table_is_refused) {
  const kit::bytes inks = constant_inks(4), rgb = kit::color_table{.grid = kit::identity_grid(2)}.encode();
  const kit::bytes levels = kit::ed_parameters(4, 2).encode(), spread = kit::ed_distribution().encode();
  kit::curve_image curve{.curves = std::vector<kit::curve>(1)};
  curve.entries = 512;
  const struct {
    std::string option;
    kit::bytes image;
    std::string said;
  } cases[] = {
      {"--csc1 ", changed(rgb, 9, 4), "has output channels 4 at offset 9, expected 3"},
      {"--csc1 ", changed(rgb, 11, 6), "has grid encoding 6 at offset 11, expected 0, 1, 2, 3 or 7"},
      {"--csc2 ", spread, "has magic \"edtb\" at offset 0, expected \"csc2\""},
      {"--csc2 ", {}, "is empty"},
      {"--csc2 ", changed(inks, 9, 255), "has output channels 255 at offset 9, expected 4 or 6"},
      {"--csc2 ", changed(inks, 6, '2'), "has version \"0020\""},
      {"--csc2 ", changed(inks, 10, 3), "has length 88, expected 246 bytes for 3 grid points"},
      {"--csc2 ", changed(changed(inks, 16, 0xFF), 17, 0xFF),
       "has G axis position [1] 65535 at offset 18, expected more than 65535"},
      {"--csc2 ", curve.encode(), "has entry count 512 at offset 10, expected 1024"},
      {"--edpr ", changed(levels, 14, 0), "has modulation matrix 0 x 1 at offset 14, expected at least 1 x 1"},
      {"--edpr ", changed(levels, 21, 3), "has 3 bits per pixel, expected 1, 2, 4 or 8"},
      {"--edtb ", changed(spread, 10, 5), "has column count 5 at offset 10, expected 7"},
      {"--edtb ", kit::bytes(spread.begin(), spread.begin() + 500), "has length 500, expected 7166"},
  };
  const std::string page = save("page.ppm", flat_page(8, 8));
  for (const auto& c : cases) {
    expect_complaint(page, c.option + save("table", c.image), path("table") + ": " + c.said);
    EXPECT_FALSE(fs::exists(dir_ / "out"));
  }
}

TEST_F(tool, takes_tables_out_of_blobs) {
  kit::blob blob;
  blob.type = "CS2T";
  blob.class_code = 'C';
  blob.entries = {{"XN  ", constant_inks(4)}, {"XP  ", constant_inks(6)}};
  const std::string page = save("page.ppm", flat_page(8, 8)), option = "--blob " + save("colors.blob", blob.encode());
  EXPECT_EQ(print(page, option + ":family=X").planes.size(), 4u);
  EXPECT_EQ(print(page, option + ":family=X,kind=4").planes.size(), 6u);
  expect_complaint(page, option, "has XN, XP; asked for HN");
  expect_complaint(page, option + ":family=X,a=2,b=1", "asked for XSP or XS");
  expect_complaint(page, option + ":kind=7", "asked for what no tag stands for");
  blob.entries[0].offset = 1 << 20;
  save("colors.blob", blob.encode());
  expect_complaint(page, option + ":family=X", "bytes of XN at offset 1048576, expected them inside its ");
  expect_complaint(page, option + ":family=Y", "family is \"Y\", expected H or X");
  expect_complaint(page, option + ":family=X,step=1", "step chooses nothing in a blob of type CS2T");
  expect_complaint(page, option + ":a=1,a=2", "gives a twice");
  expect_complaint(page, option + ":sort=4", "\"sort\" is no selector");
}

}  // namespace
