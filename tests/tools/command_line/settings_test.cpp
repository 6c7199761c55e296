// Settings files: what a print was told, told again.
#include "tests/tools/print/print_job.h"

namespace {

using namespace vrk::test;
namespace fs = std::filesystem;

using settings = print_job;

TEST_F(settings, saved_and_loaded_give_the_same_print) {
  const std::string page = busy_page(), file = path("a press.conf"), quoted = "\"" + file + "\"";
  save("tone curve, two.1dlt", load(path("few_points.csc2")));
  for (const std::string& options :
       {few_points_ + "--lift 1 --curve s:0.3 --curve r=points:0/0,50/60,100/100 --split --width16 --layout bgr "
                      "--size 2x4cm --dpi 254x127 --fill --rotate 90 --max-memory 2GB --no-preview",
        "--csc2 \"" + path("tone curve, two.1dlt") + "\" --balance 0,3,-1 --cells 2x2 --post k=gamma:2 --detail 3 4",
        few_points_ + "--balance2 1,-1 --matrix screens --ignore-orientation --preview-size 20"}) {
    const printed told = print(page, options + " --save-settings " + quoted);
    const bool drawn = fs::exists(path("out/preview.png"));
    EXPECT_EQ(print(page, "--settings " + quoted).planes, told.planes) << load(file);
    EXPECT_EQ(fs::exists(path("out/preview.png")), drawn);
  }
  print(page, few_points_ + "--levels 3 --lift 2 --save-settings " + quoted);
  const std::vector<std::string> overridden = print(page, "--settings " + quoted + " --levels 4").planes;
  EXPECT_EQ(overridden, print(page, few_points_ + "--levels 4 --lift 2").planes);
  const std::string by_hand =
      save("by_hand", "# no page to fill\nfill=false\n[print]\nlift = 2\nlevels = 4 # of a dot\n");
  EXPECT_EQ(overridden, print(page, few_points_ + "--settings " + by_hand).planes);
}

TEST_F(settings, name_what_they_cannot_say) {
  const std::string page = save("page.ppm", flat_page(8, 8)), file = path("file");
  const struct {
    const char *text, *said;
  } cases[] = {{"levels=4\nlevles=5", "\"levles\" is no setting of vrk print"},
               {"[demo]\nlevels=4", "\"demo\" is no setting of vrk print"},
               {"output=elsewhere", "\"output\" belongs on the command line"},
               {"settings=file", "\"settings\" belongs on the command line"},
               {"levels=999", "--levels: Value 999 not in range 2 to 255"},
               {"levels=4\nwidth16=true\nlevels=5", "--levels"},
               {"filter=fun", "fun not in {"},
               {"width16=maybe", "maybe"},
               {"detail=[1, 2, 3]", "--detail"},
               {"fill=true", "requires --size"},
               {"curve=\"gamma:nan\"", "expected a number from 0.1 to 10"}};
  for (const auto& c : cases) {
    save("file", c.text + std::string("\n"));
    expect_complaint(page, "--settings " + file, c.said);
    if (!strstr(c.said, "requires") && !strstr(c.said, "0.1"))
      expect_complaint(page, "--settings " + file, file + ": ");
    EXPECT_FALSE(fs::exists(path("out")));
  }
  expect_complaint(page, "--settings " + path("missing"), path("missing") + ": No such file");
  expect_complaint(page, "--settings " + dir_.string(), "Is a directory");
  fs::rename(save("some.csc2", constant_inks(4)), path("some#.csc2"));
  expect_complaint(page, "--save-settings " + path("new") + " --csc2 " + path("some#.csc2"), "cannot hold --csc2");
  expect_complaint(page, "--save-settings " + page, page + ": would be replaced");
  expect_complaint(page, few_points_ + "--save-settings " + path("few_points.csc2"),
                   "few_points.csc2: would be replaced");
  EXPECT_FALSE(fs::exists(path("new")) || fs::exists(path("out")));
}

}  // namespace
