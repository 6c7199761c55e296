// Bytes that are too many for the memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace vrk::tool {

// A temporary file without a name: it is gone with the object, or with the program.
class spool {
 public:
  spool();
  ~spool();
  spool(const spool&) = delete;
  spool& operator=(const spool&) = delete;

  void append(const void* data, std::size_t bytes);
  std::uint64_t append_rest(std::FILE* file, const std::string& name);  // returns its bytes; name: for messages
  void read(std::uint64_t at, void* to, std::size_t bytes) const;

  int descriptor() const { return file_; }  // of the file, which stays the spool's

 private:
  [[noreturn]] void fail() const;  // with the reason that the system gave last

  std::string directory_;
  int file_ = -1;
};

}  // namespace vrk::tool
