#include "tools/raster/stream_feed.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>

namespace vrk::tool {

ssize_t stream_feed::give(void* feed, unsigned char* to, std::size_t most) {
  auto& self = *static_cast<stream_feed*>(feed);
  if (self.count() <= last_bytes) self.fill();
  const std::size_t early = self.count() - std::min(self.count(), last_bytes);
  const std::size_t given = std::min(most, early != 0 ? early : std::min<std::size_t>(self.count(), 1));
  std::copy_n(self.bytes_.begin() + std::ptrdiff_t(self.begin_), given, to);
  self.begin_ += given;
  return ssize_t(given);
}

bool stream_feed::exhausted() {
  if (count() == 0) fill();
  return count() == 0;
}

void stream_feed::fill() {
  std::copy(bytes_.begin() + std::ptrdiff_t(begin_), bytes_.begin() + std::ptrdiff_t(end_), bytes_.begin());
  end_ -= begin_;
  begin_ = 0;
  // What is there, and no more: who sends pages through a pipe may take long for the next one.
  int there = 0;
  if (ioctl(fileno(file_.get()), FIONREAD, &there) != 0) there = 0;
  const std::size_t least = last_bytes + 1 - std::min(last_bytes, count());
  const std::size_t wanted = std::clamp(std::size_t(there), least, bytes_.size() - end_);  // below 0: a large file
  const std::size_t more = ended_ ? 0 : std::fread(&bytes_[end_], 1, wanted, file_.get());
  end_ += more;
  ended_ = more < wanted;
  if (ended_ && std::ferror(file_.get()) != 0) error_ = errno;
}

}  // namespace vrk::tool
