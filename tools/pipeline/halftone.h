// The last stage of the pipeline: pixels into planes of dots.
#pragma once

#include <vrk.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "tools/pipeline/stage.h"

namespace vrk::tool {

// Planes in the order of a pixel's inks; lc and lm are light cyan and light magenta.
inline constexpr std::array<std::string_view, 6> plane_names{"k", "c", "m", "y", "lc", "lm"};
inline constexpr std::array<std::string_view, 6> ink_names{"black",  "cyan",       "magenta",
                                                           "yellow", "light cyan", "light magenta"};

// plane: one of plane_names.
inline std::string_view ink_name(std::string_view plane) {
  return ink_names[std::size_t(std::find(plane_names.begin(), plane_names.end(), plane) - plane_names.begin())];
}

// Dots across and down that a pixel becomes.
struct dot_scale {
  unsigned x = 1, y = 1;
};

// What a halftone makes of one line of pixels in one plane: scale.y packed lines back to back.
struct plane_format {
  std::string_view name;    // of plane_names
  unsigned bits;            // per dot, the first dot in the most significant bits
  std::vector<double> ink;  // share of full ink that each code of a dot stands for, 0 ... 1
  dot_scale scale;
  std::size_t line_bytes;  // of one packed line
  std::size_t offset;      // of the first one among the bytes that `run` writes

  unsigned levels() const { return unsigned(ink.size()); }
};

// Takes lines in order, one at a time.
class halftone {
 public:
  virtual ~halftone() = default;

  std::string_view name() const { return name_; }
  const std::vector<std::string>& flags() const { return flags_; }  // in words
  const std::vector<plane_format>& planes() const { return planes_; }
  std::size_t output_bytes() const {
    return planes_.back().offset + planes_.back().scale.y * planes_.back().line_bytes;
  }

  // Fills output_bytes() bytes with the lines of all planes.
  virtual void run(const void* src, std::uint8_t* out) = 0;

 protected:
  explicit halftone(std::string_view name) : name_(name) {}

  // Fills planes_. values: the input value that each level of each plane stands for, K first; `full` is full ink.
  // Throws user_error, naming the table, when the bits per dot cannot be packed.
  void describe_planes(const table& parameters, const vrk_ht_info& info, const std::uint8_t (&bits)[6],
                       const std::array<std::vector<std::uint16_t>, 6>& values, double full);

  std::string_view name_;
  std::vector<std::string> flags_;
  std::vector<plane_format> planes_;
};

enum class ed_precision { bits8, bits10, samples16 };

// distribution: "edtb"; parameters: "edpr", whose extended form makes cells of dots.
std::unique_ptr<halftone> make_error_diffusion(const table& distribution, const table& parameters, std::uint32_t width,
                                               ed_precision precision);

std::unique_ptr<halftone> make_dither(const table& parameters, std::uint32_t width, bool samples16);

}  // namespace vrk::tool
