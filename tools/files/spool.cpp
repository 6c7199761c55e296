#include "tools/files/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "tools/files/temporary_directory.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

spool::spool() {
  directory_ = place_for_temporary_files().string();
  const auto until_unlinked = hold_off_end();
  std::string name = directory_ + "/vrk-XXXXXX";
  file_ = mkostemp(name.data(), O_CLOEXEC);
  if (file_ < 0) fail();
  unlink(name.c_str());
}

spool::~spool() { close(file_); }

void spool::append(const void* data, std::size_t bytes) {
  for (const auto* from = static_cast<const std::uint8_t*>(data); bytes != 0;) {
    const ssize_t written = ::write(file_, from, bytes);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail();
    from += written;
    bytes -= std::size_t(written);
  }
}

std::uint64_t spool::append_rest(std::FILE* file, const std::string& name) {
  std::uint64_t size = 0;
  std::vector<char> part(1 << 16);
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), file)) {
    append(part.data(), count);
    size += count;
  }
  if (std::ferror(file) != 0) throw user_error(name + ": " + std::strerror(errno));
  return size;
}

void spool::read(std::uint64_t at, void* to, std::size_t bytes) const {
  for (auto* next = static_cast<std::uint8_t*>(to); bytes != 0;) {
    const ssize_t count = pread(file_, next, bytes, off_t(at));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) fail();
    next += count;
    at += std::uint64_t(count);
    bytes -= std::size_t(count);
  }
}

void spool::fail() const { throw user_error(directory_ + ": a temporary file: " + std::strerror(errno)); }

}  // namespace vrk::tool
