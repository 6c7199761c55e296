// A progress bar on standard error.
#pragma once

#include <chrono>

namespace vrk::tool {

// Appears on a terminal only, after one second of work, says how much time is left, and is erased at the end.
class progress {
 public:
  // silent: never appears
  explicit progress(unsigned total, bool silent = false);
  ~progress();
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;

  void step();  // one more of `total` steps is done

 private:
  using clock = std::chrono::steady_clock;

  void draw(double seconds_left) const;

  unsigned total_, done_ = 0;
  bool wanted_, shown_ = false;
  clock::time_point start_, next_;
};

}  // namespace vrk::tool
