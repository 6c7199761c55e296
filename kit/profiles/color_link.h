// From the colours of one profile to the samples of another: what a colour table is made from and measured against.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "kit/profiles/ink_limit.h"
#include "kit/profiles/profile.h"

namespace vrk::profiles {

using samples = std::vector<std::uint16_t>;  // of pixels back to back, 0 ... 65535

// What is kept of colours that the device cannot print, and what white becomes. Numbered as in ICC profiles.
enum class intent { perceptual, relative, saturation, absolute };

// Where the planes K, C, M, Y, fifth, sixth stand among the channels of a profile. Four inks stand as C, M, Y, K. There
// is no rule for six: C, M, Y, K, light cyan, light magenta unless told otherwise.
using ink_order = std::array<std::uint8_t, 6>;
inline constexpr ink_order usual_ink_order{3, 0, 1, 2, 4, 5};

// letters: the channels of a six-colour profile in their order: C, M, Y, K, and c and m for the light inks or 5 and 6
// for the fifth and the sixth plane. Nothing for any other string.
std::optional<ink_order> ink_order_of(std::string_view letters);

struct link_options {
  intent rendering = intent::perceptual;
  bool black_point_compensation = false;  // scales lightness so that black becomes the darkest that the device prints
  std::optional<double> ink_limit{};      // percent of the inks together, above 0
  ink_order order = usual_ink_order;
};

// Several threads may use one at once.
class color_link {
 public:
  // from: a profile of RGB, or of CMYK for pages pixel by pixel. Throws profile_error where the two cannot be linked as
  // the options ask.
  color_link(const profile& from, const profile& to, const link_options& options);

  unsigned channels() const { return channels_; }                   // of the results: 3, 4 or 6
  std::optional<double> ink_limit() const { return asked_limit_; }  // percent
  // False when the device's profile has no table for the intent, and its first one serves.
  bool intent_served() const { return intent_served_; }

  // colors: R, G, B or C, M, Y, K pixels. Returns R, G, B, or inks in plane order (K, C, M, Y, fifth, sixth) within the
  // limit.
  samples convert(const samples& colors) const;

 private:
  samples convert_unlimited(const samples& colors) const;
  double largest_total() const;

  std::shared_ptr<void> transform_;
  unsigned source_channels_, channels_;
  bool intent_served_;
  ink_order order_;
  std::optional<double> asked_limit_;
  std::optional<ink_limiter> limit_;
};

// R, G, B pixels of one R and all pairs of these levels of G and B, B fastest: a slice of a cube.
samples slice_of(std::uint16_t r, const std::vector<std::uint16_t>& levels);

}  // namespace vrk::profiles
