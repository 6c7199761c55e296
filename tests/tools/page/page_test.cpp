// Pictures brought to a size on paper: what the words mean, where a picture lies, and what its pixels become.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

#include "kit/srgb.h"
#include "tests/tools/scratch.h"
#include "tools/page/page.h"
#include "tools/page/paper.h"

namespace {

using namespace vrk::tool;
namespace kit = vrk::kit;

using sample_at = std::function<unsigned(unsigned x, unsigned y, unsigned channel)>;

class drawn_picture final : public image_reader {
 public:
  drawn_picture(unsigned width, unsigned height, unsigned channels, unsigned bits, sample_at draw)
      : image_reader("drawn"), draw_(std::move(draw)) {
    width_ = width;
    height_ = height;
    channels_ = channels;
    bits_ = bits;
  }
  void read_line(void* line) override {
    for (unsigned i = 0; i < width_ * channels_; ++i) {
      const unsigned sample = draw_(i / channels_, next_, i % channels_);
      bits_ == 16 ? static_cast<std::uint16_t*>(line)[i] = std::uint16_t(sample)
                  : static_cast<std::uint8_t*>(line)[i] = std::uint8_t(sample);
    }
    ++next_;
  }

 private:
  sample_at draw_;
  unsigned next_ = 0;
};

std::unique_ptr<image_reader> draw(unsigned width, unsigned height, unsigned channels, unsigned bits, sample_at at) {
  return std::make_unique<drawn_picture>(width, height, channels, bits, std::move(at));
}

std::string lines_of(image_reader& picture) {
  std::string all, line(picture.line_bytes(), ' ');
  for (unsigned y = 0; y < picture.height(); ++y, all += line) picture.read_line(line.data());
  return all;
}

TEST(page, sizes_and_resolutions_as_people_write_them) {
  const struct {
    const char* text;
    double width, height;  // mm; 0: refused
  } sizes[] = {{"A4", 210, 297},
               {"letter", 215.9, 279.4},
               {"10x15cm", 100, 150},
               {"4x6in", 101.6, 152.4},
               {"8.5X11IN", 215.9, 279.4},
               {"0.1x1000cm", 1, 10000},
               {"10x15", 0, 0},
               {"10cm", 0, 0},
               {"10x15cmm", 0, 0},
               {"-1x5cm", 0, 0},
               {"nanx15cm", 0, 0},
               {"1x1001cm", 0, 0},
               {"1e999x1cm", 0, 0},
               {"A", 0, 0},
               {"", 0, 0}};
  for (const auto& [text, width, height] : sizes) {
    const paper_size parsed = parse_paper(text).value_or(paper_size{0, 0});
    EXPECT_NEAR(parsed.width, width, 1e-9) << text;
    EXPECT_NEAR(parsed.height, height, 1e-9) << text;
  }
  EXPECT_EQ(parse_dpi("600"), (resolution{600, 600}));
  EXPECT_EQ(parse_dpi("2400x20"), (resolution{2400, 20}));
  for (const char* text : {"", "19", "2401", "600x", "x600", "600x600x600", "-600", "6e2", "600 dpi", "99999999999"}) {
    EXPECT_FALSE(parse_dpi(text)) << text;
  }
}

TEST(page, a_picture_lies_where_its_size_and_the_paper_say) {
  constexpr resolution none{0, 0}, d254{254, 254};
  constexpr paper_size own{0, 0}, portrait{100, 150}, landscape{150, 100};
  constexpr int as_needed = -1;
  const orientation on_its_side = exif_orientation(6);
  const struct {
    const char* name;
    unsigned width, height;
    resolution own_dpi;
    orientation seen;
    paper_size paper;
    bool fill;
    int turns;
    resolution dpi;
    std::array<unsigned, 6> expected;  // page, left and top, picture on it
    std::array<double, 4> part;        // left, top, width, height
  } cases[] = {
      // clang-format off
      {"a pixel is a dot", 30, 20, none, {}, own, false, as_needed, d254, {30, 20, 0, 0, 30, 20}, {0, 0, 30, 20}},
      {"of the finer way", 30, 20, none, {}, own, false, as_needed, {508, 254}, {30, 10, 0, 0, 30, 10}, {0, 0, 30, 20}},
      {"by its own size", 30, 20, {127, 254}, {}, own, false, as_needed, d254, {60, 20, 0, 0, 60, 20}, {0, 0, 30, 20}},
      {"turned with its size", 30, 20, {127, 254}, on_its_side, own, false, as_needed, d254, {20, 60, 0, 0, 20, 60}, {0, 0, 20, 30}},
      {"margins at the sides", 20, 40, none, {}, portrait, false, as_needed, d254, {1000, 1500, 125, 0, 750, 1500}, {0, 0, 20, 40}},
      {"cut above and below", 20, 40, none, {}, portrait, true, as_needed, d254, {1000, 1500, 0, 0, 1000, 1500}, {0, 5, 20, 30}},
      {"turned for the paper", 40, 20, none, {}, portrait, false, as_needed, d254, {1000, 1500, 125, 0, 750, 1500}, {0, 0, 20, 40}},
      {"not turned", 40, 20, none, {}, portrait, false, 0, d254, {1000, 1500, 0, 500, 1000, 500}, {0, 0, 40, 20}},
      {"upright already", 40, 20, none, on_its_side, portrait, false, as_needed, d254, {1000, 1500, 125, 0, 750, 1500}, {0, 0, 20, 40}},
      {"a square stays", 20, 20, none, {}, landscape, false, as_needed, d254, {1500, 1000, 250, 0, 1000, 1000}, {0, 0, 20, 20}},
      {"unlike dots", 20, 20, none, {}, portrait, false, as_needed, {508, 254}, {2000, 1500, 0, 250, 2000, 1000}, {0, 0, 20, 20}},
      // clang-format on
  };
  for (const auto& c : cases) {
    page_options options;
    options.dpi = c.dpi;
    if (c.paper.width > 0) options.paper = c.paper;
    options.fill = c.fill;
    if (c.turns != as_needed) options.quarter_turns = unsigned(c.turns);
    placed_picture picture{c.width, c.height, {}, c.seen};
    if (c.own_dpi != none) picture.dpi = c.own_dpi;
    const placement to = place(picture, options, "picture");
    EXPECT_EQ((std::array{to.page_width, to.page_height, to.left, to.top, to.width, to.height}), c.expected) << c.name;
    const std::array part{to.part_left, to.part_top, to.part_width, to.part_height};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(part[i], c.part[i], 1e-9) << c.name;
  }
  EXPECT_NE(vrk::test::complaint([] {
              place({500, 5, resolution{1, 1}, {}}, {}, "p");
            }).find("p: would be 12.7 m long"),
            std::string::npos);
}

TEST(page, is_turned_as_the_camera_was) {
  const char* const seen[] = {"abcdef", "cbafed", "fedcba", "defabc", "adbecf", "daebfc", "fcebda", "cfbead"};
  for (unsigned number = 1; number <= 8; ++number) {
    const auto letters = [](unsigned x, unsigned y, unsigned) { return 'a' + 3 * y + x; };
    const auto picture = turn(draw(3, 2, 1, 8, letters), exif_orientation(number));
    EXPECT_EQ(picture->width(), number < 5 ? 3u : 2u) << number;
    EXPECT_EQ(lines_of(*picture), seen[number - 1]) << number;
  }
  EXPECT_EQ(exif_orientation(6).turned(), exif_orientation(3));
  EXPECT_EQ(exif_orientation(5).turned(), exif_orientation(2));
}

TEST(page, is_turned_in_strips_when_it_is_large) {
  constexpr unsigned width = 2500, height = 1100;
  const auto level = [](unsigned x, unsigned y, unsigned c) { return (x * 7 + y * 13 + x / 256 + y / 256 + c) & 0xFF; };
  for (const orientation by : {exif_orientation(6), exif_orientation(8)}) {
    const std::string all = lines_of(*turn(draw(width, height, 3, 8, level), by));
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
      const auto x = unsigned(i / 3 % height), y = unsigned(i / 3 / height), c = unsigned(i % 3);
      const unsigned expected = by.from_right ? level(width - 1 - y, x, c) : level(y, height - 1 - x, c);
      wrong += std::uint8_t(all[i]) != expected;
    }
    EXPECT_EQ(wrong, 0u);
  }
}

// One line by the definition: every pixel of the picture under three lobes counts, those beyond an edge as mirrored
// there; the result stays between the lowest and the highest under the middle lobe.
std::vector<double> lanczos_line(const std::vector<double>& from, double start, double length, unsigned result) {
  const auto sinc = [](double x) { return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x); };
  const int last = int(from.size()) - 1;
  const double step = length / result, stretch = std::max(1.0, step);
  std::vector<double> to;
  for (unsigned i = 0; i < result; ++i) {
    const double centre = start + (i + 0.5) * step - 0.5;
    double sum = 0, weights = 0, low = 1, high = 0;
    for (int at = -40; at <= last + 40; ++at) {
      const double x = (at - centre) / stretch;
      if (std::abs(x) >= 3) continue;
      const double sample = from[std::size_t(at < 0 ? -1 - at : at > last ? 2 * last + 1 - at : at)];
      sum += sample * sinc(x) * sinc(x / 3);
      weights += sinc(x) * sinc(x / 3);
      if (std::abs(x) < 1 - 1e-9 && at >= 0 && at <= last) low = std::min(low, sample), high = std::max(high, sample);
    }
    to.push_back(std::clamp(sum / weights, low, high));
  }
  return to;
}

TEST(page, is_resampled_in_linear_light_within_the_range_of_the_picture) {
  const auto noise = [](unsigned x, unsigned y, unsigned c) { return (x * 2654435761u + y * 40503u + c * 977u) >> 7; };
  constexpr unsigned width = 50, height = 41;
  const struct {
    unsigned channels, bits;
    placement to;
    double tolerance;
  } cases[] = {
      {3, 8, {{}, 0, 0, 0, 0, 171, 160, 0, 0, 50, 41, true}, 1},
      {1, 8, {{}, 0, 0, 0, 0, 17, 9, 0, 0, 50, 41, true}, 1},
      {4, 8, {{}, 0, 0, 0, 0, 70, 23, 5.5, 12.25, 30, 20.5, true}, 1},
      {3, 16, {{}, 0, 0, 0, 0, 61, 70, 0, 10.75, 50, 19.5, true}, 12},
  };
  for (const auto& [channels, bits, to, tolerance] : cases) {
    const unsigned full = (1u << bits) - 1;
    const auto level = [&, full = full](unsigned x, unsigned y, unsigned c) { return noise(x, y, c) & full; };
    const auto picture = resample(draw(width, height, channels, bits, level), to);
    const std::string all = lines_of(*picture);
    for (unsigned c = 0; c < channels; ++c) {
      std::vector<std::vector<double>> lines;
      for (unsigned y = 0; y < height; ++y) {
        std::vector<double> line;
        for (unsigned x = 0; x < width; ++x) {
          const double sample = double(level(x, y, c)) / full;
          line.push_back(channels == 4 ? sample : kit::srgb_to_linear(sample));
        }
        lines.push_back(lanczos_line(line, to.part_left, to.part_width, to.width));
      }
      for (unsigned x = 0; x < to.width; ++x) {
        std::vector<double> column;
        for (const auto& line : lines) column.push_back(line[x]);
        column = lanczos_line(column, to.part_top, to.part_height, to.height);
        for (unsigned y = 0; y < to.height; ++y) {
          const std::size_t at = (std::size_t{y} * to.width + x) * channels + c;
          const double found = bits == 8 ? std::uint8_t(all[at]) : reinterpret_cast<const std::uint16_t*>(&all[0])[at];
          ASSERT_NEAR(found, full * (channels == 4 ? column[y] : kit::linear_to_srgb(column[y])), tolerance)
              << channels << " channels of " << bits << " bits, " << x << ", " << y;
        }
      }
    }
  }
}

TEST(page, keeps_every_pixel_where_nothing_has_to_change_and_is_white_around) {
  const auto level = [](unsigned x, unsigned y, unsigned) { return 'a' + 5 * y + x; };
  page_options options{.dpi = resolution{254, 254}};
  EXPECT_EQ(lines_of(*lay_out(draw(5, 2, 1, 8, level), options)), "abcdefghij");
  options.paper = paper_size{1, 1};
  options.quarter_turns = 0;
  const std::string all =
      lines_of(*lay_out(draw(1, 2, 1, 8, [](unsigned, unsigned, unsigned) { return 'a'; }), options));
  for (unsigned y = 0; y < 10; ++y)
    EXPECT_EQ(all.substr(10 * y, 10),
              "\xFF\xFF"
              "aaaaa"
              "\xFF\xFF\xFF")
        << y;
}

}  // namespace
