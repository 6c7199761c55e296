// A progress bar on standard error.
#pragma once

#include <chrono>

namespace vrk::tool {

// Appears on a terminal only, after one second of work, and is erased at the end.
class progress {
 public:
  explicit progress(unsigned total);
  ~progress();
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;

  void step();  // one more of `total` steps is done

 private:
  using clock = std::chrono::steady_clock;

  unsigned total_, done_ = 0;
  bool terminal_, shown_ = false;
  clock::time_point next_;
};

}  // namespace vrk::tool
