// Prints through a printer's profile, and within an ink limit.
#include "tests/tools/color/made_profile.h"
#include "tests/tools/print/print_job.h"

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

TEST_F(print_profile, ink_limit_holds_for_pictures_of_inks) {
  const std::string page = save("page.pam", "P7\nWIDTH 64\nHEIGHT 64\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\n" +
                                                std::string(4 * 64 * 64, '\xFF'));
  for (const char* const width : {"", " --width16"}) {
    expect_inks(page, std::string("--ink-limit 240") + width, {1, 0.4667, 0.4667, 0.4667});
  }
}

TEST_F(print_profile, contradictions_are_refused) {
  const std::string page = save("page.ppm", flat_page(4, 4)), rgb = save("rgb.icc", saved(rgb_profile(2)));
  expect_complaint(page, "--ink-limit 200", "--ink-limit belongs to --profile");
  expect_complaint(page, "--intent relative", "--intent requires --profile");
  expect_complaint(page, "--profile " + rgb, "four or six inks");
}

}  // namespace
