#include "tools/image/output_file.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

void make_directory(const std::filesystem::path& directory) {
  std::error_code failed;
  std::filesystem::create_directories(directory, failed);
  if (failed) throw user_error(directory.string() + ": " + failed.message());
}

output_file::output_file(std::filesystem::path path) : path_(std::move(path)), temporary_(path_) {
  temporary_ += ".part";
  file_ = std::fopen(temporary_.string().c_str(), "wb");
  if (file_ == nullptr) fail();
}

output_file::~output_file() {
  if (file_ != nullptr) std::fclose(file_);
  std::error_code ignored;
  if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

void output_file::write(const void* data, std::size_t bytes) {
  if (std::fwrite(data, 1, bytes, file_) != bytes) fail();
}

void output_file::keep() {
  std::FILE* const file = std::exchange(file_, nullptr);
  if (std::fclose(file) != 0) fail();
  std::error_code failed;
  std::filesystem::rename(temporary_, path_, failed);
  if (failed) throw user_error(path_.string() + ": " + failed.message());
  temporary_.clear();
}

void output_file::fail() const { throw user_error(path_.string() + ": " + std::strerror(errno)); }

}  // namespace vrk::tool
