#include "tools/image/seekable_file.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

seekable_file::seekable_file(input_file file, const std::string& name) : file_(std::move(file)), name_(name) {
  const off_t first = ftello(file_.get());
  if (first >= 0 && fseeko(file_.get(), 0, SEEK_END) == 0) {
    first_ = std::uint64_t(first);
    size_ = std::uint64_t(ftello(file_.get())) - first_;
    return;
  }
  spooled_.emplace();
  size_ = spooled_->append_rest(file_.get(), name_);
}

std::size_t seekable_file::read(std::uint64_t at, void* to, std::size_t bytes) const {
  const std::size_t there = std::size_t(std::min<std::uint64_t>(bytes, size_ - std::min(at, size_)));
  if (spooled_) {
    spooled_->read(at, to, there);
    return there;
  }
  std::size_t done = 0;
  while (done < there) {
    const ssize_t count =
        pread(fileno(file_.get()), static_cast<char*>(to) + done, there - done, off_t(first_ + at + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    if (count == 0) break;
    done += std::size_t(count);
  }
  return done;
}

void seekable_file::fail() const { throw user_error(name_ + ": " + std::strerror(errno)); }

}  // namespace vrk::tool
