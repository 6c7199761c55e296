// Files that appear under their names only when all files of their run are complete.
#pragma once

#include <cstddef>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/files/temporary_directory.h"

namespace vrk::tool {

// One of the files while it is written.
class output_file {
 public:
  output_file(std::filesystem::path path, std::filesystem::path temporary);  // throws user_error, as its other members
  ~output_file();
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;

  const std::filesystem::path& path() const { return path_; }  // that it will have
  const std::filesystem::path& temporary() const { return temporary_; }
  void write(const void* data, std::size_t bytes);
  void write(std::string_view text) { write(text.data(), text.size()); }
  void seek(std::uint64_t at);  // where the next byte goes
  void close();

 private:
  [[noreturn]] void fail() const;  // with the last error of the system

  std::filesystem::path path_, temporary_;
  std::vector<char> buffer_ = std::vector<char>(1 << 16);  // lines are short, and the system is slow to call
  std::FILE* file_;
};

// What makes a file the same file, whatever its name.
struct file_identity {
  std::uint64_t device, number;
  bool operator==(const file_identity&) const = default;
};

// None when there is no such file. "-": standard input.
std::optional<file_identity> identity_of(const std::string& path);

// All functions throw user_error, naming the file. Without `keep`, the destructor removes everything again. Runs that
// keep their files in one directory do so one after the other.
class output_set {
 public:
  // directory: of the files; made when the first one is added, and removed again if nothing is kept
  explicit output_set(const std::filesystem::path& directory) : directory_(directory.empty() ? "." : directory) {}

  const std::filesystem::path& directory() const { return directory_; }

  // Says that this file is read by the run ("-": standard input). What would replace it, by whatever name, is refused.
  void protect(const std::string& input);

  // A new file of the set. name: may have directories in front.
  output_file& add(const std::filesystem::path& name);

  std::vector<std::filesystem::path> paths() const;  // of the files added, in their order

  // Gives all files their names; what had them before is removed, and with it the regular files that `obsolete` names:
  // it is asked while no other run changes the directory. The file added last appears last, and the one before it in
  // its place goes first. When this fails, everything is as it was before.
  void keep(const std::function<std::vector<std::string>()>& obsolete = {});

 private:
  class moves;

  void refuse_overwriting(const std::filesystem::path& path) const;

  std::filesystem::path directory_;
  std::vector<file_identity> inputs_;
  std::optional<temporary_directory> temporary_;
  std::deque<output_file> files_;
};

}  // namespace vrk::tool
