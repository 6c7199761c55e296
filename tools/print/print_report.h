// The summary of a print.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/command_line/summary.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/stopwatch.h"

namespace vrk::tool {

struct print_report {
  struct plane {
    std::string name, file;
    double coverage;  // share of full ink, 0 ... 1
  };
  std::string source;
  unsigned width, height, channels, bits;  // of the page
  resolution dpi;                          // of its pixels
  unsigned threads;
  picture_colors colors{};  // what the samples of the picture were taken for
  std::vector<plane> planes{};
  std::vector<stage_time> times{};             // in the order of the pipeline
  double seconds = 0;                          // from the first line to the last
  std::vector<std::filesystem::path> files{};  // that were written
  std::vector<std::string> tables{};           // files that were read, other than the picture
};

// The report in this form, `to` being standard output or standard error.
void show(const print_report& report, summary form, std::FILE* to);

}  // namespace vrk::tool
