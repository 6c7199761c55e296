// The files of one print: the planes as a printer would get them, and pictures of what comes out on paper.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/pipeline/stopwatch.h"
#include "tools/print/dots.h"
#include "tools/print/plane_files.h"
#include "tools/print/preview.h"
#include "tools/print/print_options.h"

namespace vrk::tool {

class page_files {
 public:
  // planes: stay where they are. page: in pixels of the picture. from: as for open_plane_files
  page_files(output_set& to, const std::vector<plane_format>& planes, const raster& page, print_format format,
             plane_order order, const picture_options& pictures, const dot_colors& look, const page_header* from);

  // One line of pixels, as the halftone wrote it.
  void add_line(const std::uint8_t* packed);
  void finish();  // after the last line

  bool drawn() const { return small_.has_value(); }
  std::size_t planes() const { return formats_.size(); }
  const plane_format& format(std::size_t plane) const { return formats_[plane]; }
  const plane_place& place(std::size_t plane) const { return planes_->places()[plane]; }
  double coverage(std::size_t plane) const { return dots_.coverage(plane); }
  double seconds_writing() const { return writing_.seconds(); }
  double seconds_drawing() const { return drawing_.seconds(); }

 private:
  const std::vector<plane_format>& formats_;
  dots dots_;
  std::unique_ptr<plane_files> planes_;
  std::optional<preview> small_;
  std::optional<detail> large_;
  stopwatch writing_, drawing_;
};

}  // namespace vrk::tool
