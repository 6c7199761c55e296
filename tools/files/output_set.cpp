#include "tools/files/output_set.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& path, const std::string& why) { throw user_error(path.string() + ": " + why); }

// One process at a time has this lock of a directory. Some network file systems cannot lock one: runs that end in the
// same instant are not kept apart there.
class directory_lock {
 public:
  explicit directory_lock(const fs::path& directory)
      : directory_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (directory_ >= 0 && flock(directory_, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  ~directory_lock() {
    if (directory_ >= 0) close(directory_);
  }
  directory_lock(const directory_lock&) = delete;
  directory_lock& operator=(const directory_lock&) = delete;

 private:
  int directory_;
};

}  // namespace

std::optional<file_identity> identity_of(const std::string& path) {
  struct stat found {};
  if ((path == "-" ? fstat(STDIN_FILENO, &found) : stat(path.c_str(), &found)) != 0) return {};
  return file_identity{found.st_dev, found.st_ino};
}

output_file::output_file(fs::path path, fs::path temporary)
    : path_(std::move(path)), temporary_(std::move(temporary)), file_(std::fopen(temporary_.c_str(), "wbx")) {
  if (file_ == nullptr) fail();
  std::setvbuf(file_, buffer_.data(), _IOFBF, buffer_.size());
}

output_file::~output_file() {
  if (file_ != nullptr) std::fclose(file_);
}

void output_file::write(const void* data, std::size_t bytes) {
  if (std::fwrite(data, 1, bytes, file_) != bytes) fail();
}

void output_file::seek(std::uint64_t at) {
  if (fseeko(file_, off_t(at), SEEK_SET) != 0) fail();
}

void output_file::close() {
  if (std::FILE* const file = std::exchange(file_, nullptr); file != nullptr && std::fclose(file) != 0) fail();
}

void output_file::fail() const { refuse(path_, std::strerror(errno)); }

// Renamed files. Unless all of them are kept, the destructor gives them their old names back.
class output_set::moves {
 public:
  moves() = default;
  ~moves() {
    for (auto move = done_.rbegin(); move != done_.rend(); ++move) std::rename(move->to.c_str(), move->from.c_str());
  }
  moves(const moves&) = delete;
  moves& operator=(const moves&) = delete;

  // named: the file in messages
  void add(const fs::path& from, const fs::path& to, const fs::path& named) {
    if (std::rename(from.c_str(), to.c_str()) != 0) refuse(named, std::strerror(errno));
    done_.push_back({from, to});
  }
  void keep() { done_.clear(); }
  std::size_t count() const { return done_.size(); }

 private:
  struct move {
    fs::path from, to;
  };
  std::vector<move> done_;
};

void output_set::protect(const std::string& input) {
  if (const auto identity = identity_of(input)) inputs_.push_back(*identity);
}

void output_set::refuse_overwriting(const fs::path& path) const {
  std::error_code ignored;
  if (fs::is_directory(fs::symlink_status(path, ignored))) refuse(path, "is a directory, expected a file or nothing");
  const auto identity = identity_of(path.string());
  if (identity && std::find(inputs_.begin(), inputs_.end(), *identity) != inputs_.end()) {
    refuse(path, "would be replaced, but it is a file that this run reads: give another directory");
  }
}

output_file& output_set::add(const fs::path& name) {
  const fs::path path = directory_ / name;
  refuse_overwriting(path);
  if (!temporary_) temporary_.emplace(directory_);
  const auto lock = hold_off_end();
  std::error_code failed;
  if (!temporary_->make_directory(path.parent_path(), failed)) refuse(path.parent_path(), failed.message());
  return files_.emplace_back(path, temporary_->path() / std::to_string(files_.size()));
}

std::vector<fs::path> output_set::paths() const {
  std::vector<fs::path> all;
  for (const output_file& file : files_) all.push_back(file.path());
  return all;
}

void output_set::keep(const std::function<std::vector<std::string>()>& obsolete) {
  if (!temporary_) return;
  for (output_file& file : files_) file.close();
  {
    const directory_lock others(temporary_->path().parent_path());
    const auto lock = hold_off_end();
    moves done;
    const auto set_aside = [&](const fs::path& path) {
      refuse_overwriting(path);
      if (std::error_code ignored; !fs::exists(fs::symlink_status(path, ignored))) return;
      done.add(path, temporary_->path() / ("old" + std::to_string(done.count())), path);
    };
    const std::vector<std::string> old = obsolete ? obsolete() : std::vector<std::string>();
    for (auto file = files_.rbegin(); file != files_.rend(); ++file) set_aside(file->path());
    for (const std::string& name : old) {
      const fs::path path = directory_ / name;
      if (std::error_code ignored; fs::is_regular_file(fs::symlink_status(path, ignored))) set_aside(path);
    }
    for (const output_file& file : files_) done.add(file.temporary(), file.path(), file.path());
    done.keep();
    for (const std::string& name : old) {
      if (std::error_code ignored; fs::path(name).has_parent_path())
        fs::remove((directory_ / name).parent_path(), ignored);
    }
  }
  files_.clear();
  temporary_.reset();
}

}  // namespace vrk::tool
