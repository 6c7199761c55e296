// The picture on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "tools/command_line/not_empty.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {

struct image_argument {
  std::string path;  // "-": standard input
  picture_limits limits{};
  std::string profile = "embedded";  // or "none", or a file
  bool sandbox = false;              // whether a confined process decodes it

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
          "--max-memory", to.limits.memory,
          "most memory for a picture that cannot be read line by line (interlaced PNG, progressive JPEG, TIFF in "
          "large tiles, planar raster), in bytes or with MB or GB behind it, 1MB to 1TB (default 1GB)")
      ->transform(CLI::AsSizeValue(false).description(""))
      ->check(CLI::Range(std::uint64_t{1} << 20, std::uint64_t{1} << 40).description(""))
      ->type_name("SIZE");
  const auto add_limit = [&](const char* name, unsigned& side, const char* what) {
    command.add_option(name, side, what)->check(CLI::Range(1, 10000000).description(""))->type_name("PIXELS");
  };
  add_limit("--max-width", to.limits.width, "widest picture that is taken, 1 to 10000000 (default 1000000)");
  add_limit("--max-height", to.limits.height, "highest picture that is taken, 1 to 10000000 (default 1000000)");
}

inline void add_sandbox_option(CLI::App& command, image_argument& to) {
  command.add_flag("--sandbox", to.sandbox,
                   "decodes the picture in a process of its own that can open no file and reach no network (Linux)");
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
  add_sandbox_option(command, to);
}

}  // namespace vrk::tool
