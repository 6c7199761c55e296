// The end of the road: pixels into planes of dots.
#pragma once

#include <vrk.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "tools/pipeline/stage.h"

namespace vrk::tool {

// What a halftone makes of one line of pixels in one plane: scale_y packed lines back to back.
struct plane_line {
  std::string_view name;      // k, c, m, y; lc and lm for the planes that accompany cyan and magenta
  unsigned bits;              // per dot, the first dot in the most significant bits
  std::vector<double> ink;    // share of full ink that each code of a dot stands for, 0 ... 1
  unsigned scale_x, scale_y;  // dots across and lines that a pixel becomes
  std::size_t line_bytes;     // of one packed line
  std::size_t offset;         // of the first one among the bytes that `run` writes

  unsigned levels() const { return unsigned(ink.size()); }
};

// Lines have to come in order, and one at a time.
class halftone {
 public:
  virtual ~halftone() = default;

  std::string_view name() const { return name_; }
  std::uint32_t flags() const { return flags_; }  // as the library keeps them
  const std::vector<plane_line>& planes() const { return planes_; }
  std::size_t output_bytes() const {
    return planes_.back().offset + planes_.back().scale_y * planes_.back().line_bytes;
  }

  // Fills output_bytes() bytes with the lines of all planes.
  virtual void run(const void* src, std::uint8_t* out) = 0;

 protected:
  explicit halftone(std::string_view name) : name_(name) {}

  // values: what the levels of each plane stand for, of which `full` is all the ink; K first.
  // Throws user_error, naming the table, for bits per dot that cannot be packed.
  void describe_planes(const table& parameters, const vrk_ht_info& info, const std::uint8_t (&bits)[6],
                       const std::array<std::vector<std::uint16_t>, 6>& values, double full);

  std::string_view name_;
  std::uint32_t flags_ = 0;
  std::vector<plane_line> planes_;
};

enum class ed_precision { bits8, bits10, samples16 };

// An extended parameter table makes cells of dots.
std::unique_ptr<halftone> make_error_diffusion(const table& spread, const table& parameters, std::uint32_t width,
                                               ed_precision precision);

std::unique_ptr<halftone> make_dither(const table& parameters, std::uint32_t width, bool samples16);

}  // namespace vrk::tool
