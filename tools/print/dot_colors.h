// The colours of dots: by the kit's ink model, or as a printer's profile shows them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "kit/profiles/printed_dots.h"

namespace vrk::tool {

// What adds up where dots are seen together, 1 is paper white: linear R, G, B, or what printed_dots has for it. As wide
// as the processor's registers, so that one instruction adds all of it; the fourth part is not used.
class light {
 public:
  light() = default;
  light(float first, float second, float third) : parts_{first, second, third, 0} {}

  float operator[](std::size_t part) const { return parts_[part]; }
  light& operator+=(const light& other) {
    parts_ += other.parts_;
    return *this;
  }
  friend light operator*(light a, const light& b) {
    a.parts_ *= b.parts_;
    return a;
  }
  friend light operator/(light a, float b) {
    a.parts_ /= b;
    return a;
  }

 private:
  float parts_ __attribute__((vector_size(16))){};
};

class dot_colors {
 public:
  dot_colors() = default;  // by the kit's ink model
  explicit dot_colors(const profiles::printed_dots& profile) : profile_(profile) {}

  // Whether light under several inks is the product of the light under each. Else all planes are asked for together.
  bool multiply() const { return !profile_; }

  // The light that dots of neighbouring planes leave: shares of full ink, of plane `first` and of those behind it.
  light of(std::span<const double> shares, std::size_t first = 0) const;

  // R, G, B of a row of dots, or of means over dots.
  std::vector<std::uint8_t> srgb_of(std::span<const light> row) const;

 private:
  std::optional<profiles::printed_dots> profile_;
};

}  // namespace vrk::tool
