#include "tools/files/ending_signals.h"

#include "tools/files/temporary_directory.h"
#include "tools/processes/child_process.h"

namespace vrk::tool {

// The signals are blocked in every thread, and one thread waits for them: unlike a handler, it may call anything.
ending_signals::ending_signals() {
  sigemptyset(&set_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler == SIG_IGN) continue;
    caught_.push_back(signal);
    sigaddset(&set_, signal);
  }
  // A file that may grow no more, or a pipe that nobody reads, is an error of its writer.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  pthread_sigmask(SIG_BLOCK, &set_, nullptr);
  if (!caught_.empty()) waiting_ = std::thread(&ending_signals::wait, this);
}

ending_signals::~ending_signals() {
  if (!waiting_.joinable()) return;
  over_ = true;
  pthread_kill(waiting_.native_handle(), caught_.front());
  waiting_.join();
}

void ending_signals::wait() {
  int signal = 0;
  sigwait(&set_, &signal);
  if (over_) return;
  const auto lock = hold_off_end();
  end_child_processes();
  remove_temporary_directories();
  std::signal(signal, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &set_, nullptr);
  std::raise(signal);
}

}  // namespace vrk::tool
