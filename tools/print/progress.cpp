#include "tools/print/progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace vrk::tool {
namespace {

constexpr unsigned bar_width = 40;

}  // namespace

progress::progress(unsigned total)
    : total_(total), terminal_(isatty(STDERR_FILENO) != 0), next_(clock::now() + std::chrono::seconds(1)) {}

progress::~progress() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
}

void progress::step() {
  ++done_;
  if (!terminal_ || done_ % 16 != 0 || clock::now() < next_) return;
  next_ = clock::now() + std::chrono::milliseconds(100);
  shown_ = true;
  const auto filled = unsigned(std::uint64_t{done_} * bar_width / total_);
  std::fprintf(stderr, "\r[%s%s] %3u %%", std::string(filled, '#').c_str(),
               std::string(bar_width - filled, '.').c_str(), unsigned(std::uint64_t{done_} * 100 / total_));
}

}  // namespace vrk::tool
