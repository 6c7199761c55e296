// One print: a picture in, plane files and pictures of the dots out.
#pragma once

#include <filesystem>
#include <optional>

#include "tools/image/image_reader.h"
#include "tools/print/preview.h"
#include "tools/print/print_setup.h"

namespace vrk::tool {

// What a print was, for the summary.
struct print_report {
  struct plane {
    std::string file;
    double coverage;  // share of full ink, 0 ... 1
  };
  std::string source;
  unsigned width, height, channels, bits;
  unsigned threads;
  std::vector<plane> planes;
  std::vector<stage_time> times;  // in the order of the road
  double seconds;                 // by the clock on the wall
};

// Reads the picture in bands of lines and writes DIR/<plane>.pbm (or .pgm above one bit), DIR/preview.png and
// DIR/detail.png. Nothing has its final name until everything is complete. detail_centre: in pixels; the page's centre
// unless given.
print_report print_page(image_reader& source, const print_options& options, const std::filesystem::path& directory,
                        std::optional<detail::place> detail_centre = {});

// The report as lines on standard output.
void show(const print_report& report, const std::filesystem::path& directory);

}  // namespace vrk::tool
