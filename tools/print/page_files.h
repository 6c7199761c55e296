// The files of one print: the planes as a printer would get them, and pictures of what comes out on paper.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/image/image_writer.h"
#include "tools/pipeline/stopwatch.h"
#include "tools/print/dots.h"
#include "tools/print/preview.h"
#include "tools/print/print_options.h"

namespace vrk::tool {

class page_files {
 public:
  // page: in pixels of the picture
  page_files(output_set& to, const std::vector<plane_format>& planes, const raster& page,
             const picture_options& pictures, const dot_colors& look);

  // One line of pixels, as the halftone wrote it.
  void add_line(const std::uint8_t* packed);
  void finish();  // after the last line

  const raster& page() const { return page_; }  // in pixels
  bool drawn() const { return small_.has_value(); }
  std::size_t planes() const { return files_.size(); }
  const plane_format& format(std::size_t plane) const { return *files_[plane].format; }
  const std::string& name(std::size_t plane) const { return files_[plane].name; }
  double coverage(std::size_t plane) const { return dots_.coverage(plane); }
  double seconds_writing() const { return writing_.seconds(); }
  double seconds_drawing() const { return drawing_.seconds(); }

 private:
  // A plane of 1 bit as its packed lines; any other as a gray picture, in which white is no ink.
  struct plane_file {
    const plane_format* format;
    std::string name;
    std::unique_ptr<image_writer> file;
  };

  void write_plane(const plane_file& plane, const std::uint8_t* packed, const std::vector<std::uint8_t>& codes);

  raster page_;
  dots dots_;
  std::vector<plane_file> files_;
  std::vector<std::uint8_t> grays_;
  std::optional<preview> small_;
  std::optional<detail> large_;
  stopwatch writing_, drawing_;
};

}  // namespace vrk::tool
