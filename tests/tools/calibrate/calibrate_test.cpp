// `vrk chart` and `vrk calibrate`: what the planes and the curves hold, beside a press whose dot gain is known.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "kit/explain.h"
#include "tests/tools/scratch.h"
#include "tools/calibrate/cgats.h"
#include "tools/commands.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/halftone.h"

namespace {

using namespace vrk::test;
using namespace vrk::tool;

class calibration : public scratch {
 protected:
  static std::string run(const std::string& line) {
    CLI::App program;
    add_chart_command(program);
    add_calibrate_command(program);
    testing::internal::CaptureStdout();
    const std::string wrong = complaint([&] { program.parse(line); });
    const std::string summary = testing::internal::GetCapturedStdout();
    return wrong.empty() ? summary : "refused: " + wrong;
  }
  std::string calibrate(const std::string& measured, const std::string& options = "") const {
    return run("calibrate " + save("measured.ti3", measured) + " -o " + path("curves.1dlt") + " " + options);
  }
};

TEST_F(calibration, chart_prints_the_tones_that_it_lists) {
  const struct {
    unsigned inks;
    std::string options;
  } cases[] = {{1, "--dpi 200 --precision 16"}, {4, "--dpi 200x100"}, {6, "--dpi 150 --halftone dither"}};
  for (const auto& [inks, options] : cases) {
    SCOPED_TRACE(options);
    const std::string summary =
        run("chart -o " + path("out") + " --steps 6 --size 10x15cm --inks " + std::to_string(inks) + " " + options);
    ASSERT_NE(summary.find(" of 6 steps"), std::string::npos) << summary;
    const step_chart chart = lay_out_chart({inks, 6, {100, 150}});
    const cgats_table listed = parse_cgats(load(path("out/chart.ti2")), "chart");
    ASSERT_EQ(listed.rows(), chart.patches.size());
    for (std::size_t plane = 0; plane < inks; ++plane) {
      const ink_columns& names = *columns_of(listed);
      const std::size_t column = *listed.column(std::string(names.family) + "_" + names.letters[plane]);
      const auto page = open_image(path("out/" + std::string(plane_names[plane]) + ".pbm"));
      std::vector<double> ink(chart.patches.size()), dots(ink.size());
      std::vector<std::uint8_t> line(page->line_bytes());
      for (unsigned y = 0; y < page->height(); ++y) {
        page->read_line(line.data());
        for (std::size_t i = 0; i < ink.size(); ++i) {  // but for the edges
          const auto inside = [&](double at, double from) { return at > from + 0.5 && at < from + chart.side - 0.5; };
          if (!inside((y + 0.5) * 150 / page->height(), chart.patches[i].top)) continue;
          for (unsigned x = 0; x < page->width(); ++x) {
            if (!inside((x + 0.5) * 100 / page->width(), chart.patches[i].left)) continue;
            ink[i] += line[x * page->channels()] == 0;
            ++dots[i];
          }
        }
      }
      for (std::size_t i = 0; i < ink.size(); ++i) {
        EXPECT_EQ(listed.at(i, 1), chart.patches[i].place);
        EXPECT_NEAR(100 * ink[i] / dots[i], std::stod(listed.at(i, column)), 3) << plane << " " << listed.at(i, 1);
      }
    }
  }
}

// Dots that gain 4 * gain * a * (1 - a), in light of X, Y and Z that a solid of the ink lets through.
struct press {
  std::string family = "CMYK", letters = "KCMY";
  double gain = 0.18, noise = 0;

  static double grown(double a, double gain) { return a + 4 * gain * a * (1 - a); }
  static std::array<double, 3> lab(const std::array<double, 3>& xyz) {
    const double x = std::cbrt(xyz[0] / 0.9642), y = std::cbrt(xyz[1]), z = std::cbrt(xyz[2] / 0.8249);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
  }

  std::array<double, 3> xyz(std::size_t ink, double tone) const {
    static constexpr double solids[6][3] = {{0.02, 0.02, 0.02},  {0.15, 0.22, 0.55}, {0.32, 0.16, 0.14},
                                            {0.68, 0.74, 0.065}, {0.50, 0.57, 0.70}, {0.60, 0.46, 0.47}};
    constexpr double paper[3] = {0.84, 0.87, 0.74};
    std::array<double, 3> mixed{};
    for (std::size_t i = 0; i < 3; ++i) mixed[i] = std::lerp(paper[i], solids[ink][i], grown(tone, gain));
    return mixed;
  }
  std::string measure(unsigned steps) const {
    std::mt19937 random(11);
    std::normal_distribution<double> light(0, noise);
    std::ostringstream text;
    text << std::fixed << "CTI3\nBEGIN_DATA_FORMAT\nSAMPLE_ID";
    for (const char ink : letters) text << ' ' << family << '_' << ink;
    text << " XYZ_X XYZ_Y XYZ_Z\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    for (std::size_t ink = 0; ink < letters.size(); ++ink) {
      for (unsigned step = 0; step < steps; ++step) {
        const double tone = double(step) / (steps - 1);
        text << 'P';
        for (std::size_t i = 0; i < letters.size(); ++i) text << ' ' << (i == ink ? 100 * tone : 0.0);
        for (const double value : xyz(ink, tone)) text << ' ' << 100 * value * (1 + light(random));
        text << '\n';
      }
    }
    text << "END_DATA\n";
    return text.str();
  }
};

TEST_F(calibration, curves_make_the_ramps_of_a_press_what_they_are_to_be) {
  const press quiet, six{"CMYKcm", "KCMYcm"}, black{"GRAY", "K"}, noisy{"CMYK", "KCMY", 0.18, 0.02};
  const struct {
    press on;
    unsigned steps;
    std::string options;
    double aim, most;  // dot gain; percent of the range from paper to full
  } cases[] = {{quiet, 21, "", 0, 0.3},
               {quiet, 9, "--dot-gain 10", 0.10, 0.3},
               {six, 21, "--dot-gain 0", 0, 0.3},
               {black, 21, "", 0, 0.3},
               {noisy, 41, "", 0, 2.5}};
  for (const auto& [on, steps, options, aim, most] : cases) {
    SCOPED_TRACE(on.family + options + " noise " + std::to_string(on.noise));
    const std::string summary = calibrate(on.measure(steps), options);
    ASSERT_NE(summary.find("largest"), std::string::npos) << summary;
    EXPECT_EQ(summary.find("smoothed") != std::string::npos, on.noise > 0);
    const std::string image = load(path("curves.1dlt"));
    const vrk::kit::bytes curves(image.begin(), image.end());
    EXPECT_EQ(vrk::kit::why_refused_main_curves(curves, unsigned(on.letters.size())).text(), "");
    for (std::size_t ink = 0; ink < on.letters.size(); ++ink) {
      const auto shown = [&](double tone) {
        if (!options.empty()) return press::grown(tone, on.gain);
        const auto paper = press::lab(on.xyz(ink, 0)), full = press::lab(on.xyz(ink, 1)),
                   at = press::lab(on.xyz(ink, tone));
        const auto off = [&](const std::array<double, 3>& color) {  // yellow is about as light as paper
          return on.letters[ink] == 'Y' ? std::hypot(color[0] - paper[0], color[1] - paper[1], color[2] - paper[2])
                                        : paper[0] - color[0];
        };
        return off(at) / off(full);
      };
      for (unsigned entry = 0; entry < 1024; entry += 31) {
        const std::size_t at = 12 + 2 * (1024 * ink + entry);
        const double printed = (curves[at] << 8 | curves[at + 1]) / 65535.0;
        EXPECT_NEAR(100 * shown(printed), 100 * press::grown(entry / 1023.0, aim), most) << ink << " " << entry;
      }
    }
  }
}

TEST_F(calibration, says_what_is_wrong_and_which_patches_are_missing) {
  const std::string good = press{}.measure(11);
  const auto changed = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
      text.replace(at, from.size(), to);
    }
    return text;
  };
  const auto without = [](std::string text, const std::string& inks) {  // rows with these
    for (std::size_t at; (at = text.find(inks)) != std::string::npos;) {
      const std::size_t row = text.rfind('\n', at);
      text.erase(row, text.find('\n', at) - row);
    }
    return text;
  };
  const std::string zero = " 0.000000", full = " 100.000000";
  const struct {
    std::string measured, sentence;
  } cases[] = {
      {std::string("\x89PNG\0\x1a", 6), "is no CGATS file"},
      {good.substr(0, good.size() / 2), "expected END_DATA"},
      {std::string(5 << 20, '#'), "at most 4 MB"},
      {changed("CMYK_Y ", "CMYK_Z "), "no columns of inks"},
      {changed("XYZ_X", "D_RED"), "no colours"},
      {changed("XYZ_Z", "XYZ_W"), "no column XYZ_Z"},
      {changed("CTI3", "CTI2"), "expected measurements"},
      {changed(full, " nan"), "CMYK_K is \"nan\", expected a number from 0 to 100"},
      {changed(full, " 1e9"), "expected a number"},
      {changed("END_DATA\n", "7 END_DATA\n"), "the last patch has 1 values"},
      {without(good, "P" + zero + zero + zero + zero), "no patches for paper"},
      {without(good, "P" + zero + full), "c 100 %"},
      {without(without(good, zero + " 40.0"), zero + " 30.0"), "c between 20 and 50 %, m between 20 and 50 %"},
      {changed(" 2.000000 2.000000 2.000000", " 84 87 74"), "k does not get stronger"},
  };
  for (const auto& [measured, sentence] : cases) {
    const std::string said = calibrate(measured);
    EXPECT_TRUE(said.starts_with("refused: ") && said.find(sentence) != std::string::npos) << sentence << ": " << said;
  }
  EXPECT_NE(calibrate(without(good, "P" + zero + " 30.0")).find("c: has no patch for 30 %"), std::string::npos);
  EXPECT_NE(run("chart -o " + path("out") + " --size 5x5cm").find("do not fit"), std::string::npos);
}

}  // namespace
