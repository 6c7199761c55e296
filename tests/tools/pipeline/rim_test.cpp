// Pages by error diffusion have their ink at the rims, too, and elsewhere the dots of a driver that prints them
// plainly.
#include <gtest/gtest.h>

#include <random>

#include "kit/presets.h"
#include "tools/print/dots.h"

namespace vrk::tool {
namespace {

constexpr unsigned rim = 12;

struct forms {
  const char* filter;
  unsigned planes;
  kit::edpr_table parameters;
  ed_precision precision = ed_precision::bits10;

  table spread() const { return {filter, kit::ed_distribution(filter).encode()}; }
  std::unique_ptr<halftone> made(std::uint32_t width) const {
    return make_error_diffusion(spread(), {"levels", parameters.encode()}, width, precision);
  }
};

const forms all_forms[] = {
    {"smooth", 4, kit::ed_parameters(4, 2, kit::ed_modulation())},
    {"fan", 4, kit::ed_parameters(4, 2, kit::fine_noise_for(2))},
    {"shiau-fan", 6, kit::ed_parameters(6, 2, kit::fine_noise_for(2))},
    {"fan", 1, kit::ed_parameters(1, 4, kit::fine_noise_for(4)), ed_precision::samples16},
    {"fan", 4, kit::cell_parameters(4, 2, 2, 5, kit::fine_noise_for(5))},
};

// A line of 8-bit samples as the form takes them.
std::vector<std::uint8_t> samples_of(const forms& form, const std::vector<std::uint8_t>& bytes) {
  if (form.precision != ed_precision::samples16) return bytes;
  std::vector<std::uint8_t> words;
  for (const std::uint8_t byte : bytes) words.insert(words.end(), 2, byte);
  return words;
}

// Five white lines, which stay white, and a tint.
TEST(rim, light_tints_have_their_ink_in_the_first_lines_and_outer_columns) {
  constexpr unsigned width = 2000, height = 120, white = 5;
  for (const forms& form : all_forms) {
    for (unsigned plane = 0; plane < form.planes; ++plane) {
      const unsigned percent = plane % 2 == 0 ? 1 : 3 + 2 * (plane / 2), tone = (percent * 255 + 50) / 100;
      SCOPED_TRACE(testing::Message() << form.filter << ", plane " << plane << " of " << form.planes << ": "
                                      << percent);
      const auto by = form.made(width);
      dots row(by->planes(), width);
      std::vector<std::uint8_t> tint(width * form.planes), packed(by->output_bytes());
      for (std::size_t x = 0; x < width; ++x) tint[x * form.planes + plane] = std::uint8_t(tone);
      double top = 0, sides = 0;
      for (unsigned y = 0; y < white + height; ++y) {
        const auto line = samples_of(form, y < white ? std::vector<std::uint8_t>(tint.size()) : tint);
        by->run(line.data(), packed.data());
        for (unsigned r = 0; r < row.scale().y; ++r) {
          row.read_row(packed.data(), r);
          const auto& codes = row.codes(plane);
          for (std::size_t x = 0; x < codes.size(); ++x) {
            const double ink = by->planes()[plane].ink[codes[x]] / (row.scale().x * row.scale().y);
            const std::size_t column = x / row.scale().x;
            if (y < white + rim) top += ink;
            if (column < rim || column >= width - rim) sides += ink;
            ASSERT_TRUE(y >= white || ink == 0);
          }
        }
      }
      EXPECT_NEAR(top / (rim * width * tone / 255.0), 1, 0.1);
      EXPECT_NEAR(sides / (2 * rim * height * tone / 255.0), 1, 0.2);  // of few dots
    }
  }
}

// Where the edges are white and the first line with ink has no tint, nothing runs ahead and nothing enters from aside.
TEST(rim, dots_within_are_those_of_the_bare_library) {
  constexpr std::uint32_t width = 331, height = 24, edge = 90, white = 3;
  for (const forms& form : all_forms) {
    const table spread = form.spread(), levels = {"levels", form.parameters.encode()};
    const std::uint32_t flags = form.precision == ed_precision::samples16 ? VRK_IN16 : VRK_PREC10;
    std::vector<std::uint8_t> memory(
        vrk_create_ed(width, spread.size(), spread.image.data(), levels.size(), levels.image.data(), flags, nullptr));
    ASSERT_NE(vrk_create_ed(width, spread.size(), spread.image.data(), levels.size(), levels.image.data(), flags,
                            memory.data()),
              0u);
    vrk_start_ed_block(memory.data(), width, 0, 0);

    const auto by = form.made(width);
    std::vector<std::uint8_t> ours(by->output_bytes()), bare(by->output_bytes());
    std::vector<std::uint8_t*> lines;
    for (const plane_format& plane : by->planes()) {
      for (unsigned y = 0; y < plane.scale.y; ++y) lines.push_back(&bare[plane.offset + y * plane.line_bytes]);
    }
    std::mt19937 random;
    for (std::uint32_t y = 0; y < height; ++y) {
      std::vector<std::uint8_t> inks(width * form.planes);
      for (std::size_t i = edge * form.planes; y >= white && i < inks.size() - edge * form.planes; ++i) {
        inks[i] = y == white ? 255 : std::uint8_t(random());
      }
      const std::vector<std::uint8_t> line = samples_of(form, inks);
      by->run(line.data(), ours.data());
      vrk_exec_edx(memory.data(), line.data(), lines.data());
      ASSERT_EQ(ours, bare) << form.filter << " in " << form.planes << " planes, line " << y;
    }
  }
}

}  // namespace
}  // namespace vrk::tool
