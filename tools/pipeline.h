// The road of a scanline: stages of the library in a row, each reading what the stage before it wrote.
#pragma once

#include <vrk.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/stopwatch.h"
#include "tools/table.h"

namespace vrk::tool {

// How the pixels of a line lie in memory: `samples` of 8 or 16 bits, back to back.
struct line_format {
  unsigned samples = 3, bits = 8;

  std::size_t pixel_bytes() const { return std::size_t{samples} * bits / 8; }
};

// A stage that turns pixels into pixels.
class stage {
 public:
  virtual ~stage() = default;

  std::string_view name() const { return name_; }
  line_format output() const { return output_; }
  virtual void run(const void* src, std::uint32_t pixels, void* dst) = 0;

 protected:
  stage(std::string_view name, line_format output) : name_(name), output_(output) {}

  std::string_view name_;
  line_format output_;
};

// RGB to RGB, or by a subtype table to one sample.
std::unique_ptr<stage> make_csc1(const table& colors, line_format input, unsigned output_bits);

// One gray sample to three equal ones, for a table that wants RGB.
std::unique_ptr<stage> make_gray_to_rgb(line_format input);

// RGB or gray to ink planes; a tone curve ("1dlt") takes gray to one plane.
std::unique_ptr<stage> make_csc2(const table& colors, line_format input, unsigned output_bits);

// One plane of what a halftone makes: a packed line at a time.
struct plane_line {
  std::string_view name;    // k, c, m, y; lc and lm for the planes that accompany cyan and magenta
  unsigned bits;            // per pixel, the first pixel in the most significant bits
  unsigned levels;          // codes run from 0 to levels - 1
  std::vector<double> ink;  // share of full ink that each code stands for, 0 ... 1
  std::vector<std::uint8_t> packed;
};

// The last stage: pixels into planes.
class halftone {
 public:
  virtual ~halftone() = default;

  std::string_view name() const { return name_; }
  const std::vector<plane_line>& planes() const { return planes_; }
  virtual void run(const void* src) = 0;  // fills the `packed` line of every plane

 protected:
  explicit halftone(std::string_view name) : name_(name) {}

  std::string_view name_;
  std::vector<plane_line> planes_;
};

enum class ed_precision { bits8, bits10, samples16 };

std::unique_ptr<halftone> make_error_diffusion(const table& spread, const table& parameters, std::uint32_t width,
                                               ed_precision precision);

std::unique_ptr<halftone> make_dither(const table& parameters, std::uint32_t width, bool samples16);

// Stages in a row and the halftone at their end, with the buffers between them and the time that each took.
class pipeline {
 public:
  pipeline(std::uint32_t width, line_format source) : width_(width), source_(source) {}

  void append(std::unique_ptr<stage> next);
  void finish(std::unique_ptr<halftone> last) { halftone_ = std::move(last); }

  line_format output() const { return stages_.empty() ? source_ : stages_.back().what->output(); }
  std::uint32_t width() const { return width_; }
  const std::vector<plane_line>& planes() const { return halftone_->planes(); }

  // Sends one source line down the road; planes() then hold its packed lines.
  void run(const void* line);

  std::vector<stage_time> times() const;

 private:
  struct step {
    std::unique_ptr<stage> what;
    std::vector<std::uint8_t> out;
    stopwatch clock;
  };

  std::uint32_t width_;
  line_format source_;
  std::vector<step> stages_;
  std::unique_ptr<halftone> halftone_;
  stopwatch halftone_clock_;
};

}  // namespace vrk::tool
