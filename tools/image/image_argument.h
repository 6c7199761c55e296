// The picture on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "tools/command_line/not_empty.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {

struct image_argument {
  std::string path;  // "-": standard input
  std::uint64_t max_memory = usual_max_memory;
  std::string profile = "embedded";  // or "none", or a file

  bool is_profile_named() const { return profile != "embedded" && profile != "none"; }
};

// All but the path. to: lives as long as the command
inline void add_picture_options(CLI::App& command, image_argument& to) {
  command
      .add_option(
          "--picture-profile", to.profile,
          "what the colours of the picture are: embedded (default, as its file says, sRGB if it does not), none "
          "(sRGB, or the printer's own inks), or an ICC profile")
      ->type_name("NAME|ICC")
      ->check(not_empty);
  command
      .add_option(
          "--max-memory", to.max_memory,
          "most memory for a picture that cannot be read line by line (interlaced PNG, progressive JPEG, TIFF in "
          "large tiles, planar raster), in bytes or with MB or GB behind it, 1MB to 1TB (default 1GB)")
      ->transform(CLI::AsSizeValue(false).description(""))
      ->check(CLI::Range(std::uint64_t{1} << 20, std::uint64_t{1} << 40).description(""))
      ->type_name("SIZE");
}

inline void add_image_argument(CLI::App& command, image_argument& to) {
  command
      .add_option(
          "image", to.path,
          "PNG, JPEG, TIFF, WebP, PBM, PGM, PPM, PAM, or a raster stream (CUPS, PWG, Apple); - for standard input")
      ->type_name("IMAGE")
      ->check(not_empty)
      ->required();
  add_picture_options(command, to);
}

}  // namespace vrk::tool
