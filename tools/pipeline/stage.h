// Stages that turn pixels into pixels, in the order in which a scanline passes them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/profiles/color_link.h"
#include "tools/pipeline/flag_words.h"
#include "tools/pipeline/table.h"

namespace vrk::tool {

// Pixel layout of RGB between stages, numbered as the library does.
enum class pixel_layout : std::uint8_t { rgb, bgr, bgrx, xrgb };

// Format of the pixels of a line, which lie back to back.
struct line_format {
  unsigned samples = 3;  // 1: gray or K; 3: R, G, B; 4: K, C, M, Y (a picture: C, M, Y, K); 6: and the light inks
  unsigned bits = 8;     // of a sample: 8, or 16 in the machine's byte order
  pixel_layout layout{};

  bool padded() const { return layout == pixel_layout::bgrx || layout == pixel_layout::xrgb; }
  std::size_t pixel_bytes() const { return std::size_t{samples + padded()} * bits / 8; }
};

class stage {
 public:
  virtual ~stage() = default;

  std::string_view name() const { return name_; }
  line_format output() const { return output_; }
  const std::vector<std::string>& flags() const { return flags_; }  // in words

  // May run on any number of threads at once.
  virtual void run(const void* src, std::uint32_t pixels, void* dst) const = 0;

 protected:
  stage(std::string_view name, line_format output) : name_(name), output_(output) {}

  std::string_view name_;
  line_format output_;
  std::vector<std::string> flags_;
};

// From the pixels of a file to what the first stage of the library takes.
std::unique_ptr<stage> make_gray_to_rgb(line_format input);
std::unique_ptr<stage> make_narrow(line_format input);  // 16 bits to 8
std::unique_ptr<stage> make_layout(line_format input, pixel_layout layout);
std::unique_ptr<stage> make_cmyk_to_kcmy(line_format input);
std::unique_ptr<stage> make_ink_link(line_format input, std::shared_ptr<const profiles::color_link> link,
                                     unsigned output_bits);

// percent: the most of all inks together; largest: that comes, see profiles::ink_limiter.
std::unique_ptr<stage> make_ink_limit(line_format input, double percent, double largest);

// What the pre-processors do, in their own steps.
struct tone_settings {
  std::optional<std::array<std::int16_t, 3>> balance{};   // R, G, B: the first pre-processor
  std::optional<std::array<std::int16_t, 2>> balance2{};  // a, b: the second one, which has no lift
  int lift = 0, contrast = 0;
  std::optional<table> curve{}, rgb_curves{};  // "1dlt" with one curve; with three

  bool any() const { return balance || balance2 || lift != 0 || contrast != 0 || curve || rgb_curves; }
};
// input: RGB of 8 bits.
std::unique_ptr<stage> make_preproc(const tone_settings& settings, line_format input, unsigned output_bits);

// RGB to RGB, or by a subtype table to one sample.
std::unique_ptr<stage> make_csc1(const table& colors, line_format input, unsigned output_bits);

// RGB or gray to ink planes; a tone curve ("1dlt") turns gray into one plane.
std::unique_ptr<stage> make_csc2(const table& colors, line_format input, unsigned output_bits);

// Curves for ink planes. Without any, only the width of the samples changes.
struct plane_curves {
  std::optional<table> main{};                   // "1dlt" with a curve for each plane, or of four planes into six
  std::array<std::optional<table>, 6> planes{};  // "1dlt" with one curve; K, C, M, Y, light cyan, light magenta

  bool any() const {
    bool found = main.has_value();
    for (const auto& curve : planes) found = found || curve;
    return found;
  }
};
// Planes that come out when `planes` come in: as many, or six of four.
unsigned planes_made(const plane_curves& curves, unsigned planes);
std::unique_ptr<stage> make_postproc(const plane_curves& curves, line_format input, unsigned output_bits);

}  // namespace vrk::tool
