// `vrk link`: its tables, run through the library, beside Little CMS with the same profiles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>

#include "kit/profiles/grid_axis.h"
#include "kit/profiles/link_table.h"
#include "tests/csc/csc_reference.h"
#include "tests/tools/color/made_profile.h"
#include "tests/tools/scratch.h"
#include "tools/commands.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;

constexpr unsigned gray_levels = 256;

// The gray axis, then random colours.
samples test_colors() {
  samples rgb;
  for (unsigned level = 0; level < gray_levels; ++level) rgb.insert(rgb.end(), 3, std::uint16_t(level));
  std::mt19937 random(5);
  while (rgb.size() < 3 * 3000) rgb.push_back(std::uint16_t(random() % 256));
  return rgb;
}

class link_command : public scratch {
 protected:
  // What the command prints; throws what it complains about.
  static std::string run(const std::string& options) {
    CLI::App program;
    vrk::tool::add_link_command(program);
    testing::internal::CaptureStdout();
    const std::string wrong = complaint([&] { program.parse("link " + options); });
    std::string summary = testing::internal::GetCapturedStdout();
    if (!wrong.empty()) throw vrk::tool::user_error(wrong);
    return summary;
  }

  // 16-bit samples in plane order that the table makes of 8-bit colours.
  samples inks(const std::string& table, const samples& rgb, unsigned channels) const {
    const std::string image = load(path(table));
    return converter(bytes(image.begin(), image.end()), VRK_OUT16).run(rgb, unsigned(rgb.size() / 3), channels);
  }
};

// What Little CMS makes of 8-bit colours of sRGB, in the order of the profile.
samples by_lcms(const icc_profile& from, const icc_profile& to, unsigned channels, unsigned intent, unsigned flags,
                samples rgb) {
  for (auto& sample : rgb) sample = std::uint16_t(sample * 257);
  const icc_transform made(cmsCreateTransform(from.get(), TYPE_RGB_16, to.get(), CHANNELS_SH(channels) | BYTES_SH(2),
                                              intent, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE | flags));
  samples device(rgb.size() / 3 * channels);
  cmsDoTransform(made.get(), rgb.data(), device.data(), cmsUInt32Number(rgb.size() / 3));
  return device;
}

std::vector<double> differences(const icc_profile& device, unsigned channels, const samples& a, const samples& b) {
  const icc_profile lab(cmsCreateLab4Profile(nullptr));
  const icc_transform seen(cmsCreateTransform(device.get(), CHANNELS_SH(channels) | BYTES_SH(2), lab.get(),
                                              TYPE_Lab_DBL, INTENT_RELATIVE_COLORIMETRIC,
                                              cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
  std::vector<double> result;
  for (std::size_t at = 0; at < a.size(); at += channels) {
    cmsCIELab first, second;
    cmsDoTransform(seen.get(), &a[at], &first, 1);
    cmsDoTransform(seen.get(), &b[at], &second, 1);
    result.push_back(cmsCIE2000DeltaE(&first, &second, 1, 1, 1));
  }
  return result;
}

double mean_of(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

double said_mean(const std::string& summary) {
  double mean = -1;
  std::sscanf(summary.substr(summary.find("mean ")).c_str(), "mean %lf", &mean);
  return mean;
}

icc_profile opened(const bytes& icc) {
  return icc_profile(cmsOpenProfileFromMem(icc.data(), cmsUInt32Number(icc.size())));
}

TEST_F(link_command, tables_hold_what_the_profile_says) {
  const struct {
    const char *channels, *options;
    unsigned intent, flags;
  } cases[] = {
      {"CMYK", "", INTENT_PERCEPTUAL, 0},
      {"CMYK", "--intent relative --bpc", INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_BLACKPOINTCOMPENSATION},
      {"CMYK", "--intent absolute --encoding delta10", INTENT_ABSOLUTE_COLORIMETRIC, 0},
      {"CMYKcm", "--intent saturation", INTENT_SATURATION, 0},
      {"KcCmMY", "--intent relative --channels KcCmMY", INTENT_RELATIVE_COLORIMETRIC, 0},
  };
  const samples rgb = test_colors();
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.channels) + " " + c.options);
    const std::string order = c.channels, planes = "KCMYcm";
    const unsigned channels = unsigned(order.size());
    const bytes icc = printer_profile(order).encode();
    save("to.icc", icc);
    const std::string summary = run("--to " + path("to.icc") + " -o " + path("made.csc2") + " " + c.options);

    const samples made = inks("made.csc2", rgb, channels);
    samples ordered(made.size());
    for (std::size_t i = 0; i < made.size(); ++i) {
      ordered[i] = made[i - i % channels + planes.find(order[i % channels])];
    }
    const icc_profile srgb(cmsCreate_sRGBProfile()), device = opened(icc);
    const samples meant = by_lcms(srgb, device, channels, c.intent, c.flags, rgb);
    std::vector<double> errors = differences(device, channels, ordered, meant);
    const double mean = mean_of(errors);
    EXPECT_LT(mean, 0.5);
    EXPECT_NEAR(said_mean(summary), mean, 0.15 * mean);
    std::sort(errors.begin(), errors.end());
    EXPECT_LT(errors[errors.size() * 99 / 100], 1.5);

    unsigned reversals = 0;  // along the grays, by more than what 12 bits cannot show
    for (std::size_t i = 0; i + channels < gray_levels * channels; ++i) {
      const int step = ordered[i + channels] - ordered[i], meant_step = meant[i + channels] - meant[i];
      reversals += (step > 0 && meant_step < -8) || (step < 0 && meant_step > 8);
    }
    EXPECT_EQ(reversals, 0);
  }
}

TEST_F(link_command, two_rgb_spaces_give_a_first_table) {
  const bytes wide = saved(rgb_profile(1.8)), steep = saved(rgb_profile(2.4));
  const std::string ends = "--from " + save("from.icc", wide) + " --to " + save("to.icc", steep);
  const samples rgb = test_colors();
  const samples meant = by_lcms(opened(wide), opened(steep), 3, INTENT_RELATIVE_COLORIMETRIC, 0, rgb);
  for (const auto& [options, most] : {std::pair{"", 0.1}, {" --encoding delta8 --precision 8", 0.4}}) {
    run(ends + " --intent relative -o " + path("made.csc1") + options);
    EXPECT_LT(mean_of(differences(opened(steep), 3, inks("made.csc1", rgb, 3), meant)), most) << options;
  }
}

TEST_F(link_command, ink_limit_holds_and_black_stays) {
  const std::string to = "--to " + save("to.icc", printer_profile("CMYK").encode()) + " --intent relative -o ";
  run(to + path("free.csc2"));
  const samples rgb = test_colors(), all = inks("free.csc2", rgb, 4);
  const auto total = [](const samples& of, std::size_t at) { return of[at] + of[at + 1] + of[at + 2] + of[at + 3]; };
  for (const int percent : {60, 180}) {
    run(to + path("limited.csc2") + " --ink-limit " + std::to_string(percent));
    const samples limited = inks("limited.csc2", rgb, 4);
    int largest = 0;
    for (std::size_t at = 0; at < all.size(); at += 4) {
      largest = std::max(largest, total(limited, at));
      if (percent < 100) continue;                    // less than black alone takes
      ASSERT_NEAR(limited[at], all[at], 1024) << at;  // interpolated between other positions
    }
    EXPECT_LE(largest, percent * 65535 / 100);
    EXPECT_GT(largest, percent * 65535 / 100 * 0.97);
  }
}

TEST(ink_limit, totals_come_down_smoothly) {
  for (const auto& [limit, largest] : {std::pair{300.0, 340.0}, {200.0, 390.0}, {100.0, 400.0}, {50.0, 600.0}}) {
    const vrk::profiles::ink_limiter limiter(limit, largest);
    EXPECT_NEAR(limiter.total_for(largest), limit, 1e-9);
    double slope = 1;
    for (double total = 0; total < largest; total += 0.5) {
      const double next = (limiter.total_for(total + 0.5) - limiter.total_for(total)) / 0.5;
      ASSERT_GE(next, 0);
      ASSERT_LE(next, slope + 1e-9) << "an edge at " << total;
      ASSERT_GT(next, slope - 0.05) << "an edge at " << total;
      slope = next;
    }
  }
}

// Linear light bends most where it is dark.
TEST(link_axis, positions_follow_the_bends) {
  using namespace vrk::profiles;
  const profile from("linear", saved(rgb_profile(1))), to("made", printer_profile("CMYK").encode());
  const color_link link(from, to, {});
  const vrk::kit::color_table bent = link_table(link, {});
  vrk::kit::color_table even{.grid = {17, 4, {}}};
  for (const std::uint16_t r : vrk::kit::even_axis(17)) {
    const samples slice = link.convert(slice_of(r, vrk::kit::even_axis(17)));
    even.grid.samples.insert(even.grid.samples.end(), slice.begin(), slice.end());
  }
  const samples rgb = test_colors();
  samples wide = rgb;
  for (auto& sample : wide) sample = std::uint16_t(sample * 257);
  const samples meant = link.convert(wide);
  const auto error = [&](const vrk::kit::color_table& table) {
    const samples made = converter(table.encode(), VRK_OUT16).run(rgb, unsigned(rgb.size() / 3), 4);
    double sum = 0;
    for (std::size_t i = 0; i < made.size(); ++i) sum += std::pow(made[i] - meant[i], 2.0);
    return sum;
  };
  EXPECT_LT(error(bent), 0.6 * error(even));
}

TEST_F(link_command, says_what_is_wrong) {
  const std::string cmyk = save("cmyk.icc", printer_profile("CMYK").encode()),
                    rgb = save("rgb.icc", saved(rgb_profile(2)));
  const icc_profile lab(cmsCreateLab4Profile(nullptr));
  save("lab.icc", saved(lab));
  save("text.icc", std::string("no profile"));
  const struct {
    std::string options, sentence;
  } cases[] = {
      {"--to " + path("text.icc"), "is no ICC profile"},
      {"--to " + path("missing.icc"), "No such file"},
      {"--to " + path("lab.icc"), "RGB, CMYK or six inks"},
      {"--to " + cmyk + " --from " + cmyk, "no RGB profile"},
      {"--to " + rgb + " --ink-limit 200", "no inks"},
      {"--to " + cmyk + " --ink-limit nan", "from 10 to 600"},
      {"--to " + cmyk + " --encoding delta8", "delta8 is for tables to RGB"},
      {"--to " + cmyk + " --intent absolute --bpc", "use one of the two"},
      {"--to " + cmyk + " --channels CMYKcm", "six inks"},
      {"--to " + save("six.icc", printer_profile("CMYKcm").encode()) + " --channels CMYKcc", "each once"},
  };
  for (const auto& c : cases) {
    const std::string said = complaint([&] { run(c.options + " -o " + path("made")); });
    EXPECT_NE(said.find(c.sentence), std::string::npos) << c.options << ": " << said;
    EXPECT_FALSE(std::filesystem::exists(path("made")));
  }
  const std::string before = load(cmyk);
  EXPECT_NE(complaint([&] { run("--to " + cmyk + " -o " + cmyk); }), "") << "the table would replace the profile";
  EXPECT_EQ(load(cmyk), before);
}

}  // namespace
