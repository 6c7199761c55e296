// Prints through a printer's profile, and within an ink limit.
#include "kit/planes.h"
#include "tests/tools/color/made_profile.h"
#include "tests/tools/print/print_job.h"
#include "tools/image/image_reader.h"

namespace {

using namespace vrk::test;

using print_profile = print_job;

TEST_F(print_profile, is_the_table_that_link_makes_of_it) {
  const std::string profile = save("to.icc", printer_profile("CMYKcm").encode()), table = path("made.csc2");
  CLI::App program;
  vrk::tool::add_link_command(program);
  testing::internal::CaptureStdout();
  program.parse("link --to " + profile + " --intent saturation --ink-limit 150 --precision 8 -o " + table);
  testing::internal::GetCapturedStdout();
  const std::string page = save("page.ppm", flat_page(60, 40));
  const printed linked = print(page, "--profile " + profile + " --intent saturation --ink-limit 150");
  EXPECT_EQ(linked.planes, print(page, "--csc2 " + table).planes);
  EXPECT_NE(linked.planes, print(page, "--profile " + profile).planes);
}

// On paper as the profile says for inks of this coverage, whatever the dots are. Three exponents follow dot gain
// closely, not exactly.
TEST_F(print_profile, preview_shows_the_dots_through_it) {
  const struct {
    const char* channels;
    double spread, most;
    const char *options, *curves;  // the profile is one of the printer with its curves
  } cases[] = {{"CMYK", 1, 4, "", ""},
               {"CMYK", 1.8, 16, "--levels 16", ""},
               {"CMYKcm", 1.8, 16, "", ""},
               {"CMYK", 1, 16, "", "--post dot-gain:0.15"},
               {"CMYKcm", 1, 4, "--halftone dither --levels 9", ""}};
  for (const auto& c : cases) {
    const std::string icc = save("to.icc", printer_profile(c.channels, c.spread).encode());
    const icc_profile device(cmsOpenProfileFromFile(icc.c_str(), "r")), srgb(cmsCreate_sRGBProfile());
    const unsigned inks = unsigned(std::string_view(c.channels).size());
    const icc_transform proof(cmsCreateTransform(device.get(), CHANNELS_SH(inks) | BYTES_SH(2), srgb.get(), TYPE_RGB_8,
                                                 INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE));
    for (const char* const color : {"\x9F\xA8\xC0", "\xC0\x60\x20"}) {
      SCOPED_TRACE(std::string(c.channels) + " " + c.options);
      std::string page = "P6 96 96 255\n";
      for (unsigned i = 0; i < 96 * 96; ++i) page += color;
      const std::string options = "--preview-size 16 --profile " + icc + " " + c.options;
      const std::vector<double> shares = print(save("page.ppm", page), options).coverage;
      if (*c.curves != 0) print(path("page.ppm"), options + " " + c.curves);
      std::uint16_t sample[6]{};
      for (unsigned p = 0; p < inks; ++p) sample[vrk::kit::table_position[p]] = std::uint16_t(shares[p] * 65535);
      std::uint8_t expected[3];
      cmsDoTransform(proof.get(), sample, expected, 1);
      const auto preview = vrk::tool::open_image(path("out/preview.png"));
      std::vector<std::uint8_t> line(preview->line_bytes());
      for (unsigned y = 0; y < preview->height() / 2; ++y) preview->read_line(line.data());
      for (unsigned i = 0; i < 3; ++i) {
        double mean = 0;
        for (unsigned x = 0; x < 16; ++x) mean += line[3 * x + i] / 16.0;
        EXPECT_NEAR(mean, expected[i], c.most);
      }
    }
  }
}

TEST_F(print_profile, ink_limit_holds_for_pictures_of_inks) {
  const std::string page = save("page.pam", "P7\nWIDTH 64\nHEIGHT 64\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\n" +
                                                std::string(4 * 64 * 64, '\xFF'));
  for (const char* const width : {"", " --width16"}) {
    expect_inks(page, std::string("--ink-limit 240") + width, {1, 0.4667, 0.4667, 0.4667});
  }
}

TEST_F(print_profile, contradictions_are_refused) {
  const std::string page = save("page.ppm", flat_page(4, 4)), rgb = save("rgb.icc", saved(rgb_profile(2)));
  expect_complaint(page, "--intent relative", "--intent requires --profile");
  expect_complaint(page, "--profile " + rgb, "four or six inks");
}

}  // namespace
