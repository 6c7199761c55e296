#include "tools/command_line/progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace vrk::tool {
namespace {

constexpr unsigned bar_width = 40;

}  // namespace

progress::progress(unsigned total, bool silent)
    : total_(total),
      wanted_(!silent && isatty(STDERR_FILENO) != 0),
      start_(clock::now()),
      next_(start_ + std::chrono::seconds(1)) {}

progress::~progress() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
}

void progress::step() {
  ++done_;
  if (!wanted_) return;
  const clock::time_point now = clock::now();
  if (now < next_) return;
  next_ = now + std::chrono::milliseconds(100);
  shown_ = true;
  draw(std::chrono::duration<double>(now - start_).count() / done_ * (total_ - done_));
}

void progress::draw(double seconds_left) const {
  const auto filled = unsigned(std::uint64_t{done_} * bar_width / total_);
  const auto left = static_cast<unsigned long>(seconds_left + 0.5);
  std::fprintf(stderr, "\r[%s%s] %3u %%, %lu:%02lu left\033[K", std::string(filled, '#').c_str(),
               std::string(bar_width - filled, '.').c_str(), unsigned(std::uint64_t{done_} * 100 / total_), left / 60,
               left % 60);
}

}  // namespace vrk::tool
