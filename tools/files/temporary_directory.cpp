#include "tools/files/temporary_directory.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

std::mutex changes;
std::vector<temporary_directory*> present;  // guarded by `changes`

}  // namespace

fs::path place_for_temporary_files() {
  std::error_code failed;
  const fs::path place = fs::temp_directory_path(failed);
  if (failed) throw user_error("TMPDIR: " + failed.message());
  return place;
}

std::unique_lock<std::mutex> hold_off_end() { return std::unique_lock(changes); }

void remove_temporary_directories() {
  for (auto newest = present.rbegin(); newest != present.rend(); ++newest)
    (*newest)->remove();  // may lie in an older's
}

temporary_directory::temporary_directory(const fs::path& parent) {
  const auto lock = hold_off_end();
  std::error_code why;
  for (int attempt = 0; path_.empty(); ++attempt) {
    std::string name = (parent / ".vrk-XXXXXX").string();
    if (!make_directory(parent, why)) break;
    if (mkdtemp(name.data()) != nullptr) {
      path_ = name;
    } else if (errno != ENOENT || attempt == 8) {  // a run that fails removes a parent that it made
      why.assign(errno, std::generic_category());
      break;
    }
  }
  if (path_.empty()) {
    remove();
    throw user_error(parent.string() + ": " + why.message());
  }
  present.push_back(this);
}

temporary_directory::~temporary_directory() {
  const auto lock = hold_off_end();
  remove();
  std::erase(present, this);
}

bool temporary_directory::make_directory(const fs::path& directory, std::error_code& why) {
  const std::size_t outer = made_.size();
  std::error_code ignored;
  for (fs::path missing = directory; !missing.empty() && !fs::exists(missing, ignored);
       missing = missing.parent_path()) {
    made_.insert(made_.begin() + std::ptrdiff_t(outer), missing);
  }
  fs::create_directories(directory, why);
  return !why;
}

void temporary_directory::remove() {
  std::error_code ignored;
  if (!path_.empty()) fs::remove_all(path_, ignored);
  for (auto made = made_.rbegin(); made != made_.rend(); ++made) fs::remove(*made, ignored);
}

}  // namespace vrk::tool
