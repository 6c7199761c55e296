// Bytes of a file for libcups, which reads ahead.
#pragma once

#include <cups/raster.h>

#include <vector>

#include "tools/image/image_reader.h"

namespace vrk::tool {

// libcups says neither where a page ends in its buffer nor whether a stream ends between two pages or inside a header.
// It gets the last bytes of the file one at a time, so it has no byte left when there are none here.
class stream_feed {
 public:
  explicit stream_feed(input_file file) : file_(std::move(file)), bytes_(1 << 16) {}

  // A callback of cupsRasterOpenIO for reading, whose context is the feed.
  static ssize_t give(void* feed, unsigned char* to, std::size_t most);

  bool exhausted();                     // no byte is left
  int error() const { return error_; }  // of the system, 0 for none

 private:
  static constexpr std::size_t last_bytes = 2048;  // more than the longest header

  void fill();
  std::size_t count() const { return end_ - begin_; }

  input_file file_;
  std::vector<unsigned char> bytes_;
  std::size_t begin_ = 0, end_ = 0;  // of what libcups has not got yet
  bool ended_ = false;               // the file has no more
  int error_ = 0;
};

}  // namespace vrk::tool
