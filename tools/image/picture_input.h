// Inputs of which the first bytes say what they are.
#pragma once

#include "tools/image/image_reader.h"

namespace vrk::tool {

struct picture_input {
  input_file file;
  std::string name;   // for messages
  int first, second;  // bytes, still to be read; EOF where there is none
};

// What read_image reads beside picture_formats, for messages.
inline constexpr const char* other_formats = ", and no raster stream (CUPS, PWG, Apple)";

picture_input open_input(const std::string& path);  // "-": standard input

// What open_image does with its input: of a raster stream, the first page.
std::unique_ptr<image_reader> read_image(picture_input input, const picture_limits& limits);

}  // namespace vrk::tool
