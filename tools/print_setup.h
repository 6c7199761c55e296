// What a print is made with: options of the command line, the tables that follow from them, and the pipeline.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/pipeline.h"

namespace vrk::tool {

struct print_options {
  std::optional<unsigned> inks{};  // 1, 4 or 6; 4, or what the colour table makes, unless given
  unsigned levels = 2;
  std::string filter = "fan";
  std::string modulation = "noise";
  unsigned precision = 10;  // 8, 10 or 16: working precision of error diffusion, or 16-bit samples all the way
  std::string csc1, csc2, edpr, edtb;  // files with the user's own tables
  std::vector<std::string> blobs;      // FILE[:selector=value,...]
};

// The tables of a print: the user's own where given, else the kit's.
struct print_tables {
  std::optional<table> rgb;   // "csc1" in front of the inks
  std::optional<table> gray;  // "csc1" that leaves one sample, for one ink
  table ink;                  // "csc2", or a tone curve for one ink
  table parameters;           // "edpr"
  table spread;               // "edtb"
  unsigned inks = 4;
};

// Throws user_error when a file cannot be read or does not go with the other options.
print_tables choose_tables(const print_options& options);

// Throws user_error when a table is refused; the sentence names the table and what is wrong with it.
pipeline make_pipeline(const print_options& options, const print_tables& tables, std::uint32_t width,
                       line_format source);

}  // namespace vrk::tool
