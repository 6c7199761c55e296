// Files that appear under their name only when they are complete.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace vrk::tool {

// Makes the directory and those above it where they are missing; throws user_error when it cannot.
void make_directory(const std::filesystem::path& directory);

// Writes under a temporary name beside `path`. `keep` gives the file its name; without it, the destructor removes it.
class output_file {
 public:
  explicit output_file(std::filesystem::path path);
  ~output_file();
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;

  const std::filesystem::path& path() const { return path_; }
  void write(const void* data, std::size_t bytes);
  void keep();

 private:
  [[noreturn]] void fail() const;  // with the last error of the system

  std::filesystem::path path_, temporary_;
  std::FILE* file_ = nullptr;
};

}  // namespace vrk::tool
