// The stages that a scanline passes, each reading what the stage before it wrote, and the halftone behind them.
#pragma once

#include <memory>
#include <vector>

#include "tools/pipeline/halftone.h"
#include "tools/pipeline/stage.h"
#include "tools/pipeline/stopwatch.h"

namespace vrk::tool {

// Several threads may convert lines at once, each with a workspace of its own.
class pipeline {
 public:
  pipeline(std::uint32_t width, line_format source) : width_(width), source_(source) {}

  void append(std::unique_ptr<stage> next);
  void finish(std::unique_ptr<halftone> last) { halftone_ = std::move(last); }

  std::uint32_t width() const { return width_; }
  line_format output() const { return stages_.empty() ? source_ : stages_.back()->output(); }
  const std::vector<plane_format>& planes() const { return halftone_->planes(); }

  // Bytes of a line as it comes in, as it is converted, and as it is halftoned.
  std::size_t source_bytes() const { return source_.pixel_bytes() * width_; }
  std::size_t ink_bytes() const { return output().pixel_bytes() * width_; }
  std::size_t packed_bytes() const { return halftone_->output_bytes(); }

  // Lines between two stages, and the time that each stage took.
  class workspace {
   public:
    explicit workspace(const pipeline& stages);

   private:
    friend pipeline;
    std::vector<std::uint8_t> lines_[2];  // taken in turns
    std::vector<stopwatch> clocks_;       // of every stage
  };

  // Sends a source line through all stages in front of the halftone.
  void convert(const void* line, std::uint8_t* out, workspace& space) const;

  // Takes lines in order, one at a time.
  void halftone_line(const void* line, std::uint8_t* out) {
    halftone_clock_.time([&] { halftone_->run(line, out); });
  }

  // Adds the time that converting took in a workspace. `times` then has all stages, and the halftone.
  void collect(const workspace& space);
  std::vector<stage_time> times() const;

 private:
  std::uint32_t width_;
  line_format source_;
  std::vector<std::unique_ptr<stage>> stages_;
  std::vector<double> seconds_;  // of every stage
  std::unique_ptr<halftone> halftone_;
  stopwatch halftone_clock_;
};

}  // namespace vrk::tool
