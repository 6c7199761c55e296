// Prints small pages by the program's command line, for tests.
#pragma once

#include <CLI/CLI.hpp>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "kit/color_table.h"
#include "kit/presets.h"
#include "tests/tools/scratch.h"
#include "tools/commands.h"

namespace vrk::test {

// A colour table that gives every colour the same inks: eighths of full ink, one more from plane to plane.
inline kit::bytes constant_inks(unsigned inks) {
  kit::color_table colors;
  colors.grid = {2, inks, {}};
  for (unsigned point = 0; point < 8; ++point) {
    for (unsigned ink = 0; ink < inks; ++ink) colors.grid.samples.push_back(std::uint16_t(65535 * (ink + 1) / 8));
  }
  return colors.encode();
}

// A page of one gray, the middle of the scale.
inline std::string flat_page(unsigned across, unsigned down, bool rgb = true) {
  return (rgb ? "P6 " : "P5 ") + std::to_string(across) + " " + std::to_string(down) + " 255\n" +
         std::string((rgb ? 3u : 1u) * across * down, '\x80');
}

// What remains of a print when its pictures are left out.
struct printed {
  std::vector<double> coverage;  // as the summary says
  std::vector<std::string> planes;
};

class print_job : public scratch {
 protected:
  // What a print into a new directory says about itself.
  std::string summary(const std::string& page, const std::string& options) const {
    CLI::App program;
    tool::add_print_command(program);
    std::filesystem::remove_all(dir_ / "out");
    testing::internal::CaptureStdout();
    const std::string wrong = complaint([&] { program.parse("print " + page + " -o " + path("out") + " " + options); });
    const std::string said = testing::internal::GetCapturedStdout();
    if (!wrong.empty()) throw tool::user_error(wrong);
    return said;
  }

  printed print(const std::string& page, const std::string& options) const {
    const auto told = nlohmann::json::parse(summary(page, options + " --json"));
    printed result;
    for (const auto& plane : told["planes"]) {
      result.planes.push_back(load(dir_ / "out" / plane["file"].get<std::string>()));
      result.coverage.push_back(plane["coverage"]);
    }
    return result;
  }

  // The planes' shares of full ink.
  void expect_inks(const std::string& page, const std::string& options, const std::vector<double>& shares) const {
    const printed result = print(page, options);
    ASSERT_EQ(result.coverage.size(), shares.size()) << options;
    for (std::size_t p = 0; p < shares.size(); ++p) {
      EXPECT_NEAR(result.coverage[p], shares[p], 0.01) << options << ", plane " << p;
    }
  }

  void expect_complaint(const std::string& page, const std::string& options, const std::string& expected) const {
    const std::string said = complaint([&] { print(page, options); });
    EXPECT_NE(said.find(expected), std::string::npos) << options << " says: " << said << "\nexpected: " << expected;
  }

  // Nothing in it is alike, and it is high enough for many bands of lines.
  std::string busy_page() const {
    std::string page = "P6 97 400 255\n";
    for (unsigned i = 0; i < 97 * 400; ++i) {
      for (unsigned c = 0; c < 3; ++c) page += char(i * (3 + c) / 7 + i / 97 * (c + 1));
    }
    return save("busy.ppm", page);
  }

  // Faster made than the program's own.
  const std::string few_points_ = "--csc2 " + save("few_points.csc2", kit::ink_table(4, 5).encode()) + " ";
};

}  // namespace vrk::test
