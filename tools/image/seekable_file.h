// Files that are read at any place, also where they come through a pipe.
#pragma once

#include <optional>

#include "tools/files/spool.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {

class seekable_file {
 public:
  // Where the system cannot seek, the rest of the file is spooled. name: for messages.
  seekable_file(input_file file, const std::string& name);

  std::uint64_t size() const { return size_; }

  // Returns how many bytes there are, up to `bytes`.
  std::size_t read(std::uint64_t at, void* to, std::size_t bytes) const;

 private:
  [[noreturn]] void fail() const;  // with the reason that the system gave last

  input_file file_;
  std::string name_;
  std::uint64_t first_ = 0, size_ = 0;  // where the file begins, and its bytes from there
  std::optional<spool> spooled_;
};

}  // namespace vrk::tool
