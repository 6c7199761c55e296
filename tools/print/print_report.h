// The summary of a print.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/image/resolution.h"
#include "tools/pipeline/stopwatch.h"

namespace vrk::tool {

struct print_report {
  struct plane {
    std::string file;
    double coverage;  // share of full ink, 0 ... 1
  };
  std::string source;
  unsigned width, height, channels, bits;  // of the page
  resolution dpi;                          // of its pixels
  unsigned threads;
  std::vector<plane> planes{};
  std::vector<stage_time> times{};  // in the order of the pipeline
  double seconds = 0;               // from the first line to the last
  bool drawn = true;                // there are pictures of the print
};

// The report as lines on standard output. directory: of the printed files.
void show(const print_report& report, const std::filesystem::path& directory);

}  // namespace vrk::tool
