// Signals that end a run: Ctrl-C, SIGTERM, SIGHUP.
#pragma once

#include <csignal>

#include <atomic>
#include <thread>
#include <vector>

namespace vrk::tool {

// While it lives, such a signal first ends the child processes, removes the temporary directories, and then ends the
// process as if nobody had caught it. One that the process was told to ignore stays ignored. Made by main before any
// other thread.
class ending_signals {
 public:
  ending_signals();
  ~ending_signals();
  ending_signals(const ending_signals&) = delete;
  ending_signals& operator=(const ending_signals&) = delete;

 private:
  void wait();

  std::vector<int> caught_;
  sigset_t set_;
  std::atomic<bool> over_ = false;
  std::thread waiting_;
};

}  // namespace vrk::tool
