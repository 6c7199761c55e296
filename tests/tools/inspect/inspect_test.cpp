// `vrk inspect`: what it tells of good tables, bad ones and hostile ones.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "kit/blob.h"
#include "kit/presets.h"
#include "tests/tools/scratch.h"
#include "tools/commands.h"
#include "tools/image/image_reader.h"
#include "tools/tables/blob_look_up.h"

namespace {

using namespace vrk::test;
namespace kit = vrk::kit;

class inspect : public scratch {
 protected:
  // What it writes, with what it complains about as the last line.
  std::string shown(const std::string& arguments) const {
    CLI::App program;
    vrk::tool::add_inspect_command(program);
    testing::internal::CaptureStdout();
    const std::string wrong = complaint([&] { program.parse("inspect " + arguments); });
    return testing::internal::GetCapturedStdout() + wrong;
  }
  nlohmann::json told(const std::string& name, const kit::bytes& image) const {
    const std::string text = shown("--json " + save(name, image));
    return nlohmann::json::parse(text.substr(0, text.rfind(']') + 1)).at(0);
  }
};

kit::bytes changed(kit::bytes image, std::size_t at, std::uint8_t value) {
  image[at] = value;
  return image;
}

// Sizes that the header of the library names, and content that the kit put in.
TEST_F(inspect, tells_what_a_table_holds) {
  using pointer = nlohmann::json::json_pointer;
  kit::color_table inks = kit::ink_table(4);
  inks.axes[0] = kit::even_axis(17);
  inks.axes[0][1] = 255;  // nothing at 8 bits
  const struct {
    kit::bytes image;
    const char *member, *value;
  } cases[] = {
      {kit::ink_table(4).encode(), "/handles/second converter/8 bits/bytes", "21389"},
      {inks.encode(), "/handles/second converter/8 bits/offset", "14"},
      {inks.encode(), "/handles/second converter/12 bits/bytes", "52612"},
      {inks.encode(), "/percent of full scale/grays 0 to 255/K/255", "0.0"},
      {kit::subtype_table("sold"), "/handles/first converter/12 bits/bytes", "324"},
      {kit::black_ink_curve().encode(), "/handles/second converter, gray to one ink/8 to 8 bits/bytes", "703"},
      {kit::split_curves().encode(), "/curves/5/values/1023", "65535"},
      {kit::split_curves().encode(), "/handles/post-processing of 4 planes/8 bits/bytes", "3232"},
      {kit::cell_parameters(4, 2, 2, 5).encode(), "/planes/K/dots/mean dots of each level/3", "3.0"},
      {kit::ed_parameters(1, 3).encode(), "/planes/K/thresholds/1", "768"},
      {kit::ed_parameters(1, 3).encode(),
       "/handles/error diffusion, with a distribution of 511 rows/8 bits/bytes a pixel of a line", "6"},
      {kit::ed_distribution("line").encode(), "/percent of the error/next pixel", "100.0"},
      {kit::dither_parameters(1, 2, "bayer4").encode(), "/planes/K/matrix/different ranks", "16"},
      {kit::dither_parameters(1, 2, "bayer4").encode(), "/planes/K/as taken with 16-bit samples/1", "1023"},
  };
  for (const auto& [image, member, value] : cases) {
    const nlohmann::json of = told("table", image);
    EXPECT_TRUE(of["taken"].get<bool>()) << member;
    EXPECT_EQ(of.value(pointer(member), nlohmann::json()).dump(), value) << member;
  }
}

TEST_F(inspect, tells_why_a_table_is_refused) {
  kit::color_table stream = kit::ink_table(4, 3, kit::grid_encoding::delta10);
  kit::bytes cut = stream.encode();
  cut.pop_back();
  // The highest sample, and then 32 more.
  const kit::bytes lifted = changed(changed(changed(stream.encode(), 30, 0xFF), 31, 0xE0), 32, 0);
  const kit::bytes curve = kit::black_ink_curve().encode();
  const struct {
    kit::bytes image;
    std::string field, offset;
  } cases[] = {
      {changed(curve, 8, 2), "curve count", "8"},
      {changed(curve, 10, 0), "entry count", "10"},
      {changed(kit::ed_parameters(4, 2).encode(), 15, 0), "modulation matrix", "14"},
      {changed(kit::dither_parameters(4, 2, "bayer2").encode(), 29, 3), "bits of plane K", "29"},
      {changed(kit::blob{.entries = {{"HN", curve}}}.encode(), 31, 0), "end of header", "31"},
      {cut, "length", "null"},
      {lifted, "sample at grid point (0, 0, 1) of plane K", "31"},
      {{'\x1B', '[', '3', '1', 'm'}, "magic", "0"},
  };
  for (const auto& [image, field, offset] : cases) {
    const nlohmann::json of = told("table", image);
    EXPECT_FALSE(of["taken"].get<bool>()) << field;
    EXPECT_EQ(of["refused"]["field"], field);
    EXPECT_EQ(of["refused"].value("offset", nlohmann::json()).dump(), offset) << field;
    EXPECT_EQ(shown(path("table")).find('\x1B'), std::string::npos);
  }
  const std::string all = shown(path("table") + " " + path("none") + " " + save("good", curve));
  EXPECT_NE(all.find("taken: yes"), std::string::npos) << all;
  EXPECT_NE(all.find("2 of 3 files refused"), std::string::npos) << all;
}

TEST_F(inspect, finds_its_way_in_a_blob) {
  const kit::bytes gray = kit::subtype_table("gray");
  kit::blob blob{.type = "CS1T", .entries = {{"HC", gray}, {"HQ", gray}, {"HC", gray}, {"XP", {1}}, {"XS", gray}}};
  blob.entries[4].offset = 9999;
  const nlohmann::json of = told("blob", blob.encode());
  EXPECT_EQ(of["entries"][0]["found by"].dump(),
            R"(["vrk_log_csc1 family=H kind=0 a=3","vrk_log_csc1 family=H kind=2,3 d=0"])");
  EXPECT_TRUE(of["entries"][1]["found by"].empty() && of["entries"][2]["found by"].empty());
  EXPECT_EQ(of["entries"][0]["holds"]["rule"], "gray");
  EXPECT_EQ(of["entries"][3]["found by"].dump(),
            R"(["vrk_log_csc1 family=X kind=0 a=1","vrk_log_csc1 family=X kind=4"])");
  EXPECT_EQ(of["entries"][4]["holds"]["refused"]["offset"], 40 + 12 * 4 + 4);
  EXPECT_FALSE(of["taken"].get<bool>());

  using tags = std::vector<std::string>;
  blob = {.type = "CS2T", .entries = {{"HC", gray}}};
  EXPECT_EQ(vrk::tool::tags_asked_for(blob.encode(), {.kind = 4, .b = 1}), (tags{"HPP ", "HNP ", "HP  "}));
  blob.type = "HRKT";
  EXPECT_EQ(vrk::tool::tags_asked_for(blob.encode(), {.family = 1, .step = -2}), (tags{"XK-2", "XR-2"}));
}

// Every table cut short or with a byte changed, and blobs that hold themselves.
TEST_F(inspect, survives_what_is_hostile) {
  const kit::bytes cells = kit::cell_parameters(6, 2, 2, 5).encode(),
                   stream = kit::ink_table(6, 3, kit::grid_encoding::delta10).encode();
  kit::blob self{.type = "OTGM"};
  for (std::uint32_t i = 0; i < 40; ++i) self.entries.push_back({"HN", {}, 0, 40 + 12 * 40 - i % 2});
  for (const kit::bytes& image :
       {kit::split_curves().encode(), cells, stream, kit::dither_parameters(6, 3, "bayer4").encode(),
        kit::ed_distribution().encode(), self.encode(), kit::blob{.entries = {{"HN", stream}}}.encode()}) {
    for (std::size_t at = 4; at < 60; ++at) {
      EXPECT_TRUE(told("table", changed(image, at, 0xFF)).contains("kind"));
      EXPECT_TRUE(told("table", {image.begin(), image.begin() + std::ptrdiff_t(at)}).contains("kind"));
    }
  }
}

TEST_F(inspect, draws_all_files_or_none) {
  const std::string inks = save("inks.csc2", kit::ink_table(4, 3).encode()),
                    cells = save("cells", kit::cell_parameters(4, 2, 2, 5, kit::fine_noise(8)).encode()),
                    dith = save("blob", kit::blob{.entries = {{"HN", kit::dither_parameters(4, 2).encode()}}}.encode());
  shown(inks + " " + cells + " " + dith + " " + inks + " --plot " + path("plots"));
  for (const char* name : {"inks.csc2", "cells", "blob", "inks.csc2-2"}) {
    EXPECT_GT(vrk::tool::open_image(path(std::string("plots/") + name + ".png"))->height(), 300u) << name;
  }
  EXPECT_NE(shown(inks + " " + cells + " --plot " + path("one.png")).find("takes one FILE"), std::string::npos);
  std::filesystem::create_directories(dir_ / "half/cells.png");
  EXPECT_NE(shown(inks + " " + cells + " --plot " + path("half")).find("is a directory"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(dir_ / "half/inks.csc2.png"));
  std::filesystem::rename(inks, path("own.png"));
  EXPECT_NE(shown(path("own.png") + " --plot " + path("own.png")).find("reads"), std::string::npos);
}

}  // namespace
