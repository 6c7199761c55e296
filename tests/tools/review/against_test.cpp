// Planes of other programs in the report.
#include <gtest/gtest.h>

#include "tests/tools/scratch.h"
#include "tools/review/against.h"

namespace {

using namespace vrk::tool;
using namespace vrk::test;

struct against : scratch {
  // A gray ramp in black ink, and what the kit's filter makes of it as a file.
  std::vector<photograph> ramp() const {
    std::string page = "P5 320 256 255\n";
    for (unsigned i = 0; i < 320 * 256; ++i) page += char(i % 320 * 255 / 319);
    report_options options;
    options.inks = 1;
    options.images.emplace_back().path = save("ramp.pgm", page);
    return read_photographs(options);
  }
  std::string dots_of(const photograph& of) const {
    const auto by = make_halftone({"fan", false}, 1, 2, true, of.inks.width);
    std::string lines, packed(by->output_bytes(), 0);
    for (unsigned y = 0; y < of.inks.height; ++y) {
      by->run(of.inks.line(y), reinterpret_cast<std::uint8_t*>(packed.data()));
      lines += packed.substr(0, (of.inks.width + 7) / 8);
    }
    std::filesystem::create_directories(path("twin"));
    return save("twin/ramp-k.pbm", "P4 320 256\n" + lines);
  }
};

TEST_F(against, paths_say_program_photograph_and_plane) {
  const std::vector<std::string> cats{"cat", "cat-2"};
  const auto says = [](const char* path, const std::vector<std::string>& names, const char* program, std::size_t of,
                       std::size_t plane) {
    const plane_path found = read_plane_path(path, names, 6);
    EXPECT_EQ(found.program, program) << path;
    EXPECT_EQ(found.photograph, of) << path;
    EXPECT_EQ(found.plane, plane) << path;
  };
  says("gimp/cat-k.pbm", cats, "gimp", 0, 0);
  says("gimp/cat-2-lm.pbm", cats, "gimp", 1, 5);
  says("gimp/cat-2/m.pbm", cats, "gimp", 1, 2);
  says("/tmp/cat/gimp/page_y.pbm", cats, "gimp", 0, 3);
  says("./cat.c.pbm", cats, "other", 0, 1);
  says("dots/lc.pbm", {"cat"}, "dots", 0, 4);
  EXPECT_NE(complaint([] {
              read_plane_path("gimp/cat-k.pbm", {"dog", "cow"}, 4);
            }).find("which photograph"),
            std::string::npos);
  EXPECT_NE(complaint([] { read_plane_path("gimp/cat-lc.pbm", {"cat"}, 4); }).find("one of k, c, m, y before"),
            std::string::npos);
}

TEST_F(against, the_same_dots_have_the_same_figures_from_a_file) {
  const std::vector<photograph> photographs = ramp();
  report_options options;
  options.against = {dots_of(photographs[0])};
  const auto rows = measure_photographs(photographs, {{"fan", false}}, options);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].name, "twin");
  const photograph_figures file = rows[0].mean(), own = rows[1].mean();
  EXPECT_GT(own.mean_noise().fine, 0.1);
  EXPECT_EQ(file.mean_noise().fine, own.mean_noise().fine);
  EXPECT_EQ(file.overlay.value().delta_e, own.overlay.value().delta_e);
}

TEST_F(against, refuses_what_is_no_plane_of_the_photograph) {
  const std::vector<photograph> photographs = ramp();
  const auto complains = [&](std::vector<std::string> files, const char* of) {
    report_options options;
    options.against = std::move(files);
    const std::string words = complaint([&] { measure_others(photographs, options); });
    EXPECT_NE(words.find(of), std::string::npos) << words;
  };
  const std::string good = dots_of(photographs[0]);
  complains({save("small-k.pbm", "P1 2 1\n0 1\n")},
            "small-k.pbm: 2 x 1 dots, expected a dot for each of the 320 x 256");
  complains({path("ramp.pgm")}, "which plane");
  complains({save("gray-k.pgm", load(path("ramp.pgm")))}, "gray-k.pgm: has grays, expected a PBM");
  complains({good, good}, "a second plane k of ramp by twin");
}

}  // namespace
