// Directories for files that are not complete yet.
#pragma once

#include <filesystem>
#include <mutex>
#include <vector>

namespace vrk::tool {

// A directory of one run, inside the directory that its files are for. Nobody can foresee its name, and only its owner
// may look into it. The destructor removes it with all that it holds.
class temporary_directory {
 public:
  // Makes `parent`, and those above it, where they are missing. Throws user_error when it cannot.
  explicit temporary_directory(const std::filesystem::path& parent);
  ~temporary_directory();
  temporary_directory(const temporary_directory&) = delete;
  temporary_directory& operator=(const temporary_directory&) = delete;

  const std::filesystem::path& path() const { return path_; }

  // Makes a directory, and those above it, where they are missing. The destructor removes those that are empty then.
  // Returns false when it cannot, with the reason in `why`.
  bool make_directory(const std::filesystem::path& directory, std::error_code& why);

  void remove();  // what the destructor does

 private:
  std::vector<std::filesystem::path> made_;  // an outer one before those in it
  std::filesystem::path path_;
};

// Where the system wants files that nobody asked for. Throws user_error when TMPDIR names no directory.
std::filesystem::path place_for_temporary_files();

// While the lock is held, no signal ends the run. It is held by whoever makes or moves files.
std::unique_lock<std::mutex> hold_off_end();

// Removes every temporary directory of the process; the caller holds the lock and then ends the process.
void remove_temporary_directories();

}  // namespace vrk::tool
