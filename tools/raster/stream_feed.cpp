#include "tools/raster/stream_feed.h"

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
  while (!ended_ && end_ < bytes_.size()) {
    const std::size_t more = std::fread(&bytes_[end_], 1, bytes_.size() - end_, file_.get());
    end_ += more;
    ended_ = more == 0;
  }
  if (ended_ && std::ferror(file_.get()) != 0) error_ = errno;
}

}  // namespace vrk::tool
